#include "cb_airable.h"

#include "ErrorItem.h"
#include "airabletrace.h"
#include "cmroot.h"
#include "playlogicinterface.h"
#include "tarnconstants.h"
#include "tarnmediadata.h"
#include "airablelog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace {

// The display's priority of the cloud's own dialogs.
constexpr int kNotificationPriority = 4;
// The player's reason for a stop it did not ask for.
constexpr int kStopReason = 0;

} // namespace

void CMAirableWorker::performReaction(QVector<QString> reactions)
{
    AIRABLE_TRACE(logger);
    PlayLogicInterface* const player = PlayLogicInterface::playerInstance();
    for (auto const& word : reactions) {
        if (word == QLatin1String("skip")) {
            LOG4CPLUS_TRACE(logger, "Reaction to perform: SKIP");
            if (player)
                player->next();
        } else if (word == QLatin1String("stop")) {
            LOG4CPLUS_TRACE(logger, "Reaction to perform: STOP");
            if (player)
                player->stop(kStopReason);
        } else if (word == QLatin1String("pause")) {
            LOG4CPLUS_TRACE(logger, "Reaction to perform: PAUSE");
            if (player)
                player->pause();
        } else if (word == QLatin1String("logout")) {
            LOG4CPLUS_TRACE(logger, "Reaction to perform: LOGOUT");
            amazonLogout();
        }
    }
}

void CMAirableWorker::showNotification(CMPath const& path)
{
    LOG4CPLUS_TRACE(logger, "Path: " << path);
    TarnNotificationDisplayItem item;
    item.setPath(path).setPriority(kNotificationPriority);
    m_notifiedPaths.insert(path);

    CMReply<QVariant> const reply;
    reply.addWatcher(this, [this, path](CMVoidReply const& finished) {
        CMError const error = finished.error();
        if (error.value(CMError::Name()).toString().isEmpty())
            return;
        LOG4CPLUS_ERROR(logger, "Failed to show notification: " << error.messageText().toStdString());
        m_notifiedPaths.remove(path);
    });
    CMRoot()->invoke(TarnNotificationDisplayOpenPath(), TarnValue().setNotificationDisplayItem(item), reply);
}

void CMAirableWorker::amazonLogout()
{
    AIRABLE_TRACE(logger);
    CMPath const path = CMPath::fromEncoded(QStringLiteral("airable:logout:amazon:") + m_config->baseUrl()
                                            + QStringLiteral("/amazon/logout"));
    setDataRequest(CMSetDataRequest(path, QString(), QVariant()));

    PlayLogicInterface* const player = PlayLogicInterface::playerInstance();
    if (!player)
        return;
    TarnRoles const track = player->data().trackRoles();
    if (TarnAirableAmazonMusicServiceType() == track.mediaData().metaData().serviceID()
        && track.path().startsWith(prefixPath())) {
        CMRoot()->setValue(TarnPlayerStoppedPlayingState(), TarnValue().setString_(QStringLiteral("{}")),
                           CMReply<QVariant>());
        LOG4CPLUS_INFO(logger, "Stopping streamer because of logout");
        player->stop(kStopReason);
    }
}

bool CMAirableWorker::reactTo(airable::ErrorItem const& error)
{
    if (!error.hasReaction())
        return false;
    LOG4CPLUS_ERROR(logger, "Reacting to received error: " << error.message().toStdString());
    performReaction(error.reaction());
    return true;
}
