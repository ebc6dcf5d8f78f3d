#include "cb_airable.h"

#include "ErrorItem.h"
#include "EventsItem.h"
#include "MessageItem.h"
#include "airabletrace.h"
#include "cmglobal.h"
#include "tarnplaylogicdata.h"
#include "airablelog.h"

#include <algorithm>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

void CMAirableWorker::handleStateChange(CMSetDataRequest const& request)
{
    TarnPlayLogicData const data(TarnHash(request.value().toHash()));
    CMPath const path = data.trackRoles().path();

    // The user's own stop is no failure of the stream.
    if (!data.error().isEmpty() && data.error() != TarnPlaylogicErrorName::TarnPlaylogicUserStop()) {
        m_lastStreamState = TarnPlayLogicData::Stopped;
        reportEvent(path, airable::EventsItem::errorEvent);
        return;
    }
    if (data.state() == TarnPlayLogicData::Stopped) {
        m_lastStreamState = TarnPlayLogicData::Stopped;
        reportEvent(path, airable::EventsItem::stopEvent);
        return;
    }
    if (data.__contains(TarnPlayLogicData::StreamId()) && data.streamId() != m_lastStreamId) {
        m_lastStreamId = data.streamId();
        m_lastStreamState = TarnPlayLogicData::Playing;
        reportEvent(path, airable::EventsItem::startEvent);
    }
    if (data.state() == TarnPlayLogicData::Paused && m_lastStreamState != TarnPlayLogicData::Paused) {
        m_lastStreamState = TarnPlayLogicData::Paused;
        reportEvent(path, airable::EventsItem::pauseEvent);
    } else if (data.state() == TarnPlayLogicData::Playing && m_lastStreamState != TarnPlayLogicData::Playing) {
        m_lastStreamState = TarnPlayLogicData::Playing;
        reportEvent(path, airable::EventsItem::startEvent);
    }
}

void CMAirableWorker::reportEvent(CMPath const& path, QString const& event)
{
    LOG4CPLUS_TRACE(logger, "Path: " << path << ", event: " << event.toStdString());
    bool const idle = m_eventQueue.isEmpty();
    m_eventQueue.append(Event{path, event});
    // A call in flight goes on to the next event when it finishes.
    if (idle)
        sendQueuedEvent();
}

void CMAirableWorker::sendQueuedEvent()
{
    LOG4CPLUS_TRACE(logger, "Event queue size: " << m_eventQueue.size());
    if (m_eventQueue.isEmpty())
        return;
    Event const event = m_eventQueue.first();
    int const at = std::find_if(m_eventRecords.cbegin(), m_eventRecords.cend(),
                                [&event](EventRecord const& r) { return r.path == event.path; })
                   - m_eventRecords.cbegin();
    if (at == m_eventRecords.size()) {
        LOG4CPLUS_WARN(logger, "Report url for path: " << event.path << " doesn't exist, ignoring: "
                                                       << event.event.toStdString());
        m_eventQueue.removeFirst();
        sendQueuedEvent();
        return;
    }
    // The stream reported now makes the streams prepared before it history,
    // so the records follow the play order and stay few.
    m_eventRecords.erase(m_eventRecords.begin(), m_eventRecords.begin() + at);
    QString const url = m_eventRecords.first().urls.value(event.event);
    if (url.isEmpty()) {
        m_eventQueue.removeFirst();
        sendQueuedEvent();
        return;
    }

    CMGetRowsRequest const request(CMPath::fromPrefixWithBase(url), 0, 1, 0, CMAllRoles());
    prepareAndSendRequest(request, "on_eventResponse", nullptr);
    request.reply().onFinished(this, [this](CMReply<TarnRowsRoles> const& reply) {
        CMError const error = reply.error();
        if (!error.value(CMError::Name()).toString().isEmpty()) {
            LOG4CPLUS_WARN(logger, "Report event failed: " << error.toJsonString().toStdString());
        } else if (reply.value().isEmpty()) {
            LOG4CPLUS_DEBUG(logger, "Report event success");
        } else if (m_notifiedPaths.isEmpty()) {
            showNotification(reply.value().rowsRedirect());
        } else {
            LOG4CPLUS_WARN(logger, "Another notification already shown");
        }
        m_eventQueue.removeFirst();
        sendQueuedEvent();
    });
}

void CMAirableWorker::on_eventResponse(AirableConnect::Reply const& reply, CMRequest const& request,
                                       QVariant const&)
{
    AIRABLE_TRACE(logger, reply.url.toString().toStdString());
    CMGetRowsRequest const rows(request);
    if (reply.data.isEmpty()) {
        rows.reply().setValue(TarnRowsRoles());
        return;
    }
    airable::AirableObject::Ptr const object = reply.object;
    if (!object) {
        setStandardErrorMessage(request);
        return;
    }
    auto const listing = object.dynamicCast<airable::ListingContainer>();
    if (listing && listing->name() == QLatin1String("true")) {
        rows.reply().setValue(TarnRowsRoles());
        return;
    }
    if (auto const message = object.dynamicCast<airable::MessageItem>()) {
        if (message->hasReaction())
            performReaction(!message->reaction().isEmpty() ? message->reaction() : message->perform());
        handleMessage(rows, object);
        return;
    }
    if (auto const error = object.dynamicCast<airable::ErrorItem>()) {
        reactTo(*error);
        if (!error->message().isEmpty())
            rows.reply().setError(CMError(QStringLiteral("Error"), TrString(error->message())));
        else
            setStandardErrorMessage(request);
        return;
    }
    setStandardErrorMessage(request);
}
