#include "airabletrackretriever.h"

#include "JsonParser.h"
#include "tarnconstants.h"
#include "airablelog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

AirableTrackRetriever::AirableTrackRetriever(AirableConnect* connect)
    : m_connect(connect)
{
    qRegisterMetaType<AirableTrackResponse>("AirableTrackResponse");
}

CMReply<AirableTrackResponse> AirableTrackRetriever::getFirstTrack()
{
    CMReply<AirableTrackResponse> reply;
    getFirstTrackInternal(reply);
    return reply;
}

CMReply<AirableTrackResponse> AirableTrackRetriever::getNextTrack()
{
    CMReply<AirableTrackResponse> reply;
    next(reply);
    return reply;
}

CMReply<AirableTrackResponse> AirableTrackRetriever::getPreviousTrack()
{
    CMReply<AirableTrackResponse> reply;
    getPreviousTrackInternal(reply);
    return reply;
}

CMReply<AirableTrackResponse> AirableTrackRetriever::prepareNextTrack()
{
    CMReply<AirableTrackResponse> reply;
    if (m_skipLimited)
        sendSkipStatusRequest(TarnUrl::fromEncoded(m_skipStatusUrl.toUtf8()));
    prepareNextTrackInternal(reply);
    return reply;
}

bool AirableTrackRetriever::skipLimitReached() const
{
    return m_skipLimited && m_availableSkips < 1;
}

void AirableTrackRetriever::next(CMReply<AirableTrackResponse> reply)
{
    if (m_skipFetching) {
        // The count that decides comes with the answer to the last skip.
        LOG4CPLUS_INFO(logger, "Skip limit is fetching, wait");
        m_nextPending = true;
        m_pendingNextReply = reply;
        return;
    }
    if (m_skipLimited) {
        if (m_availableSkips < 1) {
            reply.setError(CMError(TarnErrorSkipLimitReached(),
                TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QStringLiteral("Skip limit reached")))));
            return;
        }
        LOG4CPLUS_INFO(logger, "Skips available: " << m_availableSkips);
        m_skipFetching = true;
        sendSkipStatusRequest(TarnUrl::fromEncoded(m_skipUrl.toUtf8()));
    }
    getNextTrackInternal(reply);
}

void AirableTrackRetriever::updateSkipLimit(airable::SkipItem::Ptr skip)
{
    m_skipLimited = bool(skip);
    m_availableSkips = skip ? skip->available() : 0;
    m_skipStatusUrl = skip ? skip->statusUrl() : QString();
    m_skipUrl = skip ? skip->skipUrl() : QString();
}

void AirableTrackRetriever::sendSkipStatusRequest(TarnUrl const& url)
{
    m_connect->send(url, -1).onFinished(
        this, [this](CMReply<AirableConnect::Reply> const& reply) { on_skipUrlFetched(reply); });
}

void AirableTrackRetriever::on_skipUrlFetched(CMReply<AirableConnect::Reply> const& reply)
{
    m_skipFetching = false;
    if (reply.hasError()) {
        LOG4CPLUS_DEBUG(logger, "Fetch skip url failed: " << reply.error().toJsonString().toStdString());
    } else {
        // A skip answer is no identified object: its three members are read
        // from the parsed tree.
        QByteArray const data = reply.value().data;
        portable::utils::JsonParser parser;
        parser.parse(data);
        auto const root = parser.root();
        auto const url = root->childByName(QStringLiteral("url"));
        auto const status = root->childByName(QStringLiteral("status"));
        auto const available = root->childByName(QStringLiteral("available"));
        if (root->numChildren() == 3 && url->isValid() && status->isValid() && available->isValid()) {
            m_skipLimited = true;
            m_availableSkips = int(available->intValue());
            m_skipStatusUrl = status->stringValue();
            m_skipUrl = url->stringValue();
            LOG4CPLUS_INFO(logger, "Skip fetched, available skips: " << m_availableSkips);
        } else {
            LOG4CPLUS_ERROR(logger, "Unexpected json: " << data.toStdString());
        }
    }
    if (m_nextPending) {
        m_nextPending = false;
        next(std::exchange(m_pendingNextReply, CMReply<AirableTrackResponse>()));
    }
}
