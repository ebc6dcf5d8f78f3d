#include "cb_airable.h"

#include "FormItem.h"
#include "MessageItem.h"
#include "airabletrace.h"
#include "cmroot.h"
#include "playlogicinterface.h"
#include "tarnactionreply.h"
#include "tarnconstants.h"
#include "tarnmediadata.h"
#include "airablelog.h"

#include <QRegExp>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace {

// A go-to answer: the client opens path.
QVariant goTo(CMPath const& path)
{
    TarnActionReply answer;
    answer.setXclass(QStringLiteral("TarnActionReply"));
    answer.setResult(TarnRoles().setPath(path));
    return answer.__variant();
}

} // namespace

void CMAirableWorker::on_setDataRequest(CMSetDataRequest r)
{
    AIRABLE_TRACE(logger, r.path().toEncoded().toStdString());
    CMPath const& path = r.path();

    if (path.startsWith(addPrefix(TarnAirablePrefixPreplay()))) {
        prepareAndSendRequest(r, "on_redirectDone", nullptr);
        return;
    }
    if (path.startsWith(addPrefix(TarnAirablePrefixMessage())) && r.role() == TarnRoles::Activate()) {
        submitMessage(r);
        return;
    }
    if (path.startsWith(addPrefix(TarnAirablePrefixLogout()))) {
        logout(r);
        return;
    }
    if (path.startsWith(addPrefix(TarnAirablePrefixForm())) && r.role() == TarnRoles::Activate()) {
        submitForm(r, Q_FUNC_INFO);
        return;
    }
    if (path.startsWith(addPrefix(TarnAirablePrefixAction()))) {
        cloudCall(r, CMPath::fromPrefixWithBase(path.base().mid(TarnAirablePrefixAction().size() + 1)), CMPath());
        return;
    }
    if (path.startsWith(addPrefix(QStringLiteral("http")))) {
        cloudCall(r, CMPath::fromPrefixWithBase(path.base()), CMPath());
        return;
    }
    if (path.startsWith(addPrefix(TarnAirableStateChange()))) {
        handleStateChange(r);
        r.reply().setValue(QVariant());
        return;
    }
    if (path == TarnAirablePreparePlaylistItemsPath()) {
        preparePlaylistItems(r);
        return;
    }
    CMNodesWorker::setDataRequest(r);
    // A value edited inside a form: its edit view has done its work.
    if (path.startsWith(addPrefix(TarnAirablePrefixForm())))
        nodes()->subscribe()->changed(path + QStringLiteral(":edit"), CMSubscribe::RowsChangeClose(), -1, -1);
}

void CMAirableWorker::logout(CMSetDataRequest const& request)
{
    AIRABLE_TRACE(logger, request.path().toEncoded().toStdString());
    QRegExp const pattern(addPrefix(TarnAirablePrefixLogout()).baseWithPrefix() + QStringLiteral(":([^:]+):(.*)"),
                          Qt::CaseSensitive);
    if (pattern.indexIn(request.path().baseWithPrefix()) >= 0) {
        QString const stype = pattern.cap(1);
        CMGetRowsRequest const cloud(CMPath::fromPrefixWithBase(pattern.cap(2)), 0, 0, -1, QStringList());
        m_lastListing = nullptr;
        m_lastUrl = TarnUrl();
        nodes()->subscribe()->changed(addPrefix(m_config->baseUrl() + QLatin1Char('/') + stype),
                                      CMSubscribe::RowsChangeClose(), -1, -1);
        sendRequest(cloud, nullptr, nullptr, QVariant());

        if (playerHoldsTrackOf(extractServiceId(stype, QString()))) {
            LOG4CPLUS_DEBUG(logger, "Stopping streamer because of logout");
            CMRoot()->setValue(TarnPlayerStoppedPlayingState(), TarnValue().setString_(QStringLiteral("{}")),
                               CMReply<QVariant>());
            PlayLogicInterface::playerInstance()->stop(0);
        }
    }
    request.reply().setValue(goTo(TarnService_Home_UIPath()));
}

bool CMAirableWorker::playerHoldsTrackOf(QString const& serviceId) const
{
    PlayLogicInterface* const player = PlayLogicInterface::playerInstance();
    if (!player)
        return false;
    TarnRoles const track = player->data().trackRoles();
    return track.mediaData().metaData().serviceID() == serviceId && track.path().startsWith(prefixPath());
}

void CMAirableWorker::cloudCall(CMSetDataRequest const& request, CMPath const& target, CMPath const& closePath)
{
    AIRABLE_TRACE(logger, target.toEncoded().toStdString());
    CMGetRowsRequest const inner(target, 0, 0, -1, QStringList());
    inner.reply().onFinished([this, request, closePath](CMReply<TarnRowsRoles> const& reply) {
        setDataRequestFinished(reply, request, closePath);
    });
    sendRequest(inner, "on_setDone", nullptr, QVariant());
}

void CMAirableWorker::on_setDone(AirableConnect::Reply const& reply, CMRequest const& request, QVariant const&)
{
    AIRABLE_TRACE(logger, reply.url.toString().toStdString());
    if (reply.statusCode != 200)
        LOG4CPLUS_ERROR(logger, "on_setDone:" << reply.url.toString().toStdString() << " code: " << reply.statusCode);

    CMGetRowsRequest const rows(request);
    auto const listing = reply.object.dynamicCast<airable::ListingContainer>();
    if (listing && !listing.dynamicCast<airable::MessageItem>() && !listing.dynamicCast<airable::FormItem>()) {
        m_lastListing = nullptr;
        m_lastUrl = TarnUrl();
        TarnRowsRoles answer;
        answer.setRowsRedirect(addPrefix(listing->url()));
        rows.reply().setValue(answer);
        return;
    }
    handleResponse(rows, reply.url, reply.object);
}

void CMAirableWorker::setDataRequestFinished(CMReply<TarnRowsRoles> const& reply, CMSetDataRequest const& request,
                                             CMPath const& closePath)
{
    CMError const error = reply.error();
    if (!error.value(CMError::Name()).toString().isEmpty()) {
        LOG4CPLUS_ERROR(logger, "Intermediate step on setDataRequest failed: " << error.toJsonString().toStdString());
        request.reply().setError(error);
        return;
    }
    TarnActionReply answer;
    answer.setXclass(QStringLiteral("TarnActionReply"));
    answer.setResult(TarnRoles().setPath(reply.value().rowsRedirect()));
    TarnList<TarnEvent> events;
    if (!closePath.isEmpty())
        events << TarnEvent().setRowsType(TarnEventRowsType::Close).setPath(closePath);
    answer.setEvents(events);
    request.reply().setValue(answer.__variant());
}

void CMAirableWorker::setClosePathReply(CMSetDataRequest const& request)
{
    TarnActionReply answer;
    answer.setXclass(QStringLiteral("TarnActionReply"));
    answer.setEvents({TarnEvent().setRowsType(TarnEventRowsType::Close)});
    request.reply().setValue(answer.__variant());
}
