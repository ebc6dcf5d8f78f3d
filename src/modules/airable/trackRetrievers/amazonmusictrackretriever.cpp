#include "amazonmusictrackretriever.h"

#include "airableerrors.h"
#include "PaginationItem.h"
#include "airablelog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

AmazonMusicTrackRetriever::AmazonMusicTrackRetriever(AirableConnect* connect, TarnUrl const& programUrl)
    : AirableTrackRetriever(connect)
    , m_airableConnect(connect)
    , m_programUrl(programUrl)
{
}

void AmazonMusicTrackRetriever::start(ActionType action, CMReply<AirableTrackResponse> const& reply)
{
    AIRABLE_ASSERT(m_actionType == none, "m_actionType == AmazonMusicTrackRetriever::none");
    m_actionType = action;
    m_reply = reply;
}

void AmazonMusicTrackRetriever::getFirstTrackInternal(CMReply<AirableTrackResponse> reply)
{
    start(first, reply);
    sendProgramRequest(m_programUrl);
}

void AmazonMusicTrackRetriever::getNextTrackInternal(CMReply<AirableTrackResponse> reply)
{
    start(next, reply);
    sendProgramRequest(m_nextUrl);
}

void AmazonMusicTrackRetriever::getPreviousTrackInternal(CMReply<AirableTrackResponse> reply)
{
    start(previous, reply);
    sendProgramRequest(m_previousUrl);
}

void AmazonMusicTrackRetriever::prepareNextTrackInternal(CMReply<AirableTrackResponse> reply)
{
    AIRABLE_ASSERT(m_actionType == none, "m_actionType == AmazonMusicTrackRetriever::none");
    if (m_nextUrl.isEmpty()) {
        // Known only once the current page has started playing.
        LOG4CPLUS_ERROR(logger, "Empty next track url!");
        reply.setError(translatedError(Q_FUNC_INFO, QStringLiteral("Empty next track url")));
        return;
    }
    start(prepareNext, reply);
    sendProgramRequest(m_nextUrl);
}

void AmazonMusicTrackRetriever::sendProgramRequest(TarnUrl const& url)
{
    m_airableConnect->send(url, AirableConnect::ListingReadLimit)
        .onFinished(this, [this](CMReply<AirableConnect::Reply> const& reply) { on_programFetched(reply); });
}

void AmazonMusicTrackRetriever::setReply(airable::TrackItem::Ptr const& track, airable::ErrorItem::Ptr const& error)
{
    m_actionType = none;
    m_reply.setValue(AirableTrackResponse{track, error});
}

void AmazonMusicTrackRetriever::setError(CMError const& error)
{
    m_actionType = none;
    m_reply.setError(error);
}

void AmazonMusicTrackRetriever::on_programFetched(CMVoidReply const& finished)
{
    CMReply<AirableConnect::Reply> const reply(finished);
    if (reply.hasError()) {
        LOG4CPLUS_DEBUG(logger, "Fetch program failed: " << reply.error().toJsonString().toStdString());
        setError(reply.error());
        return;
    }
    if (auto const error = reply.value().object.dynamicCast<airable::ErrorItem>()) {
        m_invalidCount = 0;
        setReply(airable::TrackItem::Ptr(), error);
        return;
    }
    auto const program = reply.value().object.dynamicCast<airable::ProgramItem>();
    if (!program) {
        LOG4CPLUS_ERROR(logger, "Unexpected json: " << reply.value().data.toStdString());
        m_invalidCount = 0;
        setError(translatedError(Q_FUNC_INFO, QStringLiteral("Invalid response from server")));
        return;
    }

    auto const tracks = program->tracks();
    if (tracks.isEmpty() || tracks.first()->streams().isEmpty()) {
        auto const pagination = program->pagination();
        if (m_invalidCount > 2 || !pagination) {
            m_invalidCount = 0;
            setError(translatedError(Q_FUNC_INFO, QStringLiteral("Failed to get valid item")));
            return;
        }
        LOG4CPLUS_WARN(logger, "Skipping track without streams");
        ++m_invalidCount;
        // The walk keeps its direction.
        QString const url = m_actionType == previous ? pagination->prev() : pagination->next();
        sendProgramRequest(TarnUrl::fromEncoded(url.toUtf8()));
        return;
    }

    m_invalidCount = 0;
    updateSkipLimit(program->skip());
    m_seekAllowed = !program->skip();
    if (m_actionType == prepareNext) {
        m_preparedProgram = program;
    } else if (m_actionType == first) {
        m_currentProgram = program;
    } else {
        m_preparedProgram = nullptr;
        m_fetchedProgram = program;
        takeNeighbours(*program);
    }
    setReply(tracks.first(), airable::ErrorItem::Ptr());
}

void AmazonMusicTrackRetriever::takeNeighbours(airable::ProgramItem const& program)
{
    auto const pagination = program.pagination();
    m_nextUrl = TarnUrl::fromEncoded((pagination ? pagination->next() : QString()).toUtf8());
    m_previousUrl = TarnUrl::fromEncoded((pagination ? pagination->prev() : QString()).toUtf8());
}

void AmazonMusicTrackRetriever::playbackStarted()
{
    if (m_fetchedProgram)
        m_currentProgram = std::exchange(m_fetchedProgram, airable::ProgramItem::Ptr());
    // A prepared page wins over a fetched one.
    if (m_preparedProgram)
        m_currentProgram = std::exchange(m_preparedProgram, airable::ProgramItem::Ptr());
    if (m_currentProgram)
        takeNeighbours(*m_currentProgram);
}

TarnPlayLogicControls AmazonMusicTrackRetriever::availableControls()
{
    TarnPlayLogicControls controls;
    controls.setPause(true);
    if (!m_nextUrl.isEmpty() && !skipLimitReached())
        controls.setNext_(true);
    if (!m_previousUrl.isEmpty())
        controls.setPrevious(true);
    controls.setSeekTime(m_seekAllowed);
    return controls;
}
