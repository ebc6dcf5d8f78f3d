#include "cb_airable.h"

#include "airableerrors.h"
#include "ErrorItem.h"
#include "FormItem.h"
#include "TrackItem.h"
#include "airabletrace.h"
#include "cmglobal.h"
#include "playlogicinterface.h"
#include "tarnplaylistitem.h"
#include "airablelog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

void CMAirableWorker::preparePlaylistItems(CMSetDataRequest const& request)
{
    AIRABLE_TRACE(logger);
    for (auto const& encoded : request.value().toStringList())
        m_playlistPathsToPrepare << CMPath::fromEncoded(encoded);
    // An empty batch gets no answer at all, as it always has.
    if (m_playlistPathsToPrepare.isEmpty())
        return;
    prepareItem(request, m_playlistPathsToPrepare.takeFirst());
}

void CMAirableWorker::prepareItem(CMSetDataRequest const& request, CMPath const& path)
{
    AIRABLE_TRACE(logger, path.toEncoded().toStdString());
    TarnUrl const url = TarnUrl::fromEncoded((m_config->baseUrl() + QStringLiteral("/id") + path.base()).toLatin1());
    m_connect->send(url, AirableConnect::ItemReadLimit)
        .onSuccess(this, [this, request](AirableConnect::Reply const& reply) {
            prepareItemFinished(reply.url, reply.object, request);
        })
        .onError(this, [request](CMError const& error) { request.reply().setError(error); });
}

void CMAirableWorker::prepareItemFinished(TarnUrl const&, airable::AirableObject::Ptr object,
                                          CMSetDataRequest const& request)
{
    AIRABLE_TRACE(logger);
    if (auto const error = object.dynamicCast<airable::ErrorItem>()) {
        // The paths left and the items gathered stay for the next batch.
        if (reactTo(*error)) {
            setClosePathReply(request);
        } else if (!error->message().isEmpty()) {
            request.reply().setError(CMError(QStringLiteral("Error"), TrString(error->message())));
        } else {
            setStandardErrorMessage(request);
        }
        return;
    }
    if (auto const track = object.dynamicCast<airable::TrackItem>()) {
        QList<QVariant> const row = genRow(CMAllRoles(), track, false);
        TarnPlayListItem item;
        item.setTitle(track->title());
        item.setAlbum(track->albumTitle());
        item.setArtist(track->artistTitle());
        item.setDurationSeconds(track->duration());
        item.setUrl(track->url());
        item.setTarnRoles(TarnHash(CMGlobal::rolesValuesToHash(CMAllRoles(), row)).toJsonString());
        m_preparedPlaylistItems << item.__variant();
    } else {
        LOG4CPLUS_ERROR(logger, "Server didn't returned track");
    }

    if (m_playlistPathsToPrepare.isEmpty()) {
        request.reply().setValue(QVariant(m_preparedPlaylistItems));
        m_preparedPlaylistItems.clear();
        return;
    }
    prepareItem(request, m_playlistPathsToPrepare.takeFirst());
}

void CMAirableWorker::on_gettingTrackDone(AirableConnect::Reply const& reply, CMRequest const& request, QVariant const&)
{
    AIRABLE_TRACE(logger, reply.url.toString().toStdString());
    CMSetDataRequest const set(request);
    airable::AirableObject::Ptr const object = reply.object;

    auto const item = object.dynamicCast<airable::ContentItem>();
    if (item && item->playable()) {
        QList<QVariant> const row = genRow(CMAllRoles(), item, false);
        QVariant const roles = TarnHash(CMGlobal::rolesValuesToHash(CMAllRoles(), row)).__variant();
        sendRequest(request, "on_redirectDone", this, roles);
        return;
    }
    if (auto const error = object.dynamicCast<airable::ErrorItem>()) {
        if (reactTo(*error)) {
            setClosePathReply(set);
            return;
        }
        // The cloud's text goes first; the fixed text below follows it.
        if (!error->message().isEmpty())
            set.reply().setError(CMError(QStringLiteral("Error"), TrString(error->message())));
    } else if (object.dynamicCast<airable::FormItem>()) {
        LOG4CPLUS_ERROR(logger, "Airable returned form item. Are we logged in?");
        set.reply().setError(translatedError(Q_FUNC_INFO, QStringLiteral("We are not logged in service or something")));
        return;
    }
    LOG4CPLUS_ERROR(logger, "Failed to get track by ID");
    set.reply().setError(translatedError(Q_FUNC_INFO, QStringLiteral("Can't retrive track from server")));
}

void CMAirableWorker::resumePausedPlayback(TarnUrl const& url, CMSetDataRequest const& request)
{
    LOG4CPLUS_INFO(logger, "Enter " << dbglog_scopedFunction(Q_FUNC_INFO, "CB_Airable") << ": "
                                    << url.toString().toStdString());
    m_connect->send(url, AirableConnect::NoReadLimit)
        .onSuccess(this, [this, request](AirableConnect::Reply const& reply) {
            if (reply.statusCode == 200) {
                if (PlayLogicInterface* const player = PlayLogicInterface::playerInstance())
                    player->pause();
                setClosePathReply(request);
                return;
            }
            request.reply().setError(translatedError(Q_FUNC_INFO, QStringLiteral("Failed to resume playback!")));
        })
        .onError(this, [request](CMError const& error) { request.reply().setError(error); });
}
