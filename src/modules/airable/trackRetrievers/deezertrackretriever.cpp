#include "deezertrackretriever.h"

#include "airableerrors.h"
#include "ProgramItem.h"
#include "airablelog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

DeezerTrackRetriever::DeezerTrackRetriever(AirableConnect* connect, TarnUrl const& programUrl)
    : AirableTrackRetriever(connect)
    , m_airableConnect(connect)
    , m_programUrl(programUrl)
{
    // The first batch is on its way before the first track is asked for.
    fetchNewTracksIfNecessary();
}

void DeezerTrackRetriever::start(ActionType action, CMReply<AirableTrackResponse> const& reply)
{
    AIRABLE_ASSERT(m_actionType == none, "m_actionType == DeezerTrackRetriever::none");
    m_actionType = action;
    m_reply = reply;
    getTrack();
}

void DeezerTrackRetriever::getFirstTrackInternal(CMReply<AirableTrackResponse> reply)
{
    start(first, reply);
}

void DeezerTrackRetriever::getNextTrackInternal(CMReply<AirableTrackResponse> reply)
{
    start(next, reply);
}

void DeezerTrackRetriever::prepareNextTrackInternal(CMReply<AirableTrackResponse> reply)
{
    start(prepareNext, reply);
}

void DeezerTrackRetriever::getPreviousTrackInternal(CMReply<AirableTrackResponse> reply)
{
    AIRABLE_ASSERT(m_actionType == none, "m_actionType == DeezerTrackRetriever::none");
    reply.setError(translatedError(Q_FUNC_INFO, QStringLiteral("Not supported")));
}

void DeezerTrackRetriever::fetchNewTracksIfNecessary()
{
    if (!m_tracks.isEmpty() || m_fetching)
        return;
    m_fetching = true;
    m_airableConnect->send(m_programUrl, AirableConnect::ListingReadLimit)
        .onFinished(this, [this](CMReply<AirableConnect::Reply> const& reply) { on_programTracksFetched(reply); });
}

void DeezerTrackRetriever::getTrack()
{
    for (;;) {
        if (m_fetching || m_tracks.isEmpty()) {
            // The batch's arrival asks again.
            fetchNewTracksIfNecessary();
            return;
        }
        airable::TrackItem::Ptr const track = m_tracks.first();
        if (!track->streams().isEmpty()) {
            m_invalidCount = 0;
            // A prepared track stays first until it really starts playing.
            m_trackPrepared = m_actionType == prepareNext;
            if (!m_trackPrepared)
                m_tracks.removeFirst();
            setReply(track);
            return;
        }
        if (m_invalidCount > 2) {
            m_invalidCount = 0;
            setError(translatedError(Q_FUNC_INFO, QStringLiteral("Too many invalid items")));
            return;
        }
        LOG4CPLUS_WARN(logger, "Skipping track without streams");
        ++m_invalidCount;
        m_tracks.removeFirst();
    }
}

void DeezerTrackRetriever::setReply(airable::TrackItem::Ptr const& track)
{
    m_actionType = none;
    m_reply.setValue(AirableTrackResponse{track, airable::ErrorItem::Ptr()});
}

void DeezerTrackRetriever::setError(CMError const& error)
{
    m_actionType = none;
    m_reply.setError(error);
}

void DeezerTrackRetriever::playbackStarted()
{
    if (m_trackPrepared) {
        m_tracks.removeFirst();
        m_trackPrepared = false;
    }
}

TarnPlayLogicControls DeezerTrackRetriever::availableControls()
{
    // Next stays on at the skip limit: pressing it brings up the offer.
    return TarnPlayLogicControls().setPause(true).setNext_(true).setSeekTime(m_seekAllowed);
}

void DeezerTrackRetriever::on_programTracksFetched(CMVoidReply const& finished)
{
    CMReply<AirableConnect::Reply> const reply(finished);
    m_fetching = false;
    if (reply.hasError()) {
        LOG4CPLUS_ERROR(logger, "Fetch program track failed: " << reply.error().messageText().toStdString());
        setError(reply.error());
        return;
    }
    auto const program = reply.value().object.dynamicCast<airable::ProgramItem>();
    if (!program) {
        LOG4CPLUS_ERROR(logger, "Unexpected json: " << reply.value().data.toStdString());
        m_invalidCount = 0;
        if (m_actionType != none)
            setError(translatedError(Q_FUNC_INFO, QStringLiteral("Invalid response from server")));
        return;
    }
    updateSkipLimit(program->skip());
    // A program with skip limits gives no seeking either.
    m_seekAllowed = !program->skip();
    for (auto const& track : program->tracks())
        m_tracks.append(track);
    if (m_tracks.isEmpty()) {
        LOG4CPLUS_ERROR(logger, "No tracks present in program!");
        m_invalidCount = 0;
        setError(translatedError(Q_FUNC_INFO, QStringLiteral("No tracks present in program")));
        return;
    }
    if (m_actionType != none)
        getTrack();
}
