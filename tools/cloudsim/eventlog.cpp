#include "eventlog.h"
#include "cloudsimlog.h"

#include <QRegularExpression>

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace cloudsim {

EventLog::EventLog(int limit, qint64 bytes) : mEvents(limit, bytes) {}

// About the memory a kept event holds: its texts, and the list node that
// holds it.
qint64 EventLog::footprintOf(PlaybackEvent const& event)
{
    qint64 const node = 16;
    return node + qint64(sizeof event) + textFootprint(event.word) + textFootprint(event.stream)
           + textFootprint(event.device);
}

bool EventLog::record(Call const& call)
{
    static QRegularExpression const eventPath("^/.+/events/(start|pause|stop|error)$");
    QRegularExpressionMatch const match = eventPath.match(call.path);
    if (!match.hasMatch())
        return false;
    PlaybackEvent const event{match.captured(1), call.param("stream"), call.device, QDateTime::currentDateTimeUtc()};
    LOG4CPLUS_INFO(logger, "event " << event.word.toStdString() << " of stream " << event.stream.toStdString()
                                    << " from device " << event.device.toStdString());
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mEvents.append(event);
    }
    std::lock_guard<std::mutex> lock(mListenerMutex);
    if (mListener)
        mListener(event);
    return true;
}

void EventLog::setListener(Listener listener)
{
    std::lock_guard<std::mutex> lock(mListenerMutex);
    mListener = std::move(listener);
}

QList<PlaybackEvent> EventLog::events() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mEvents.entries();
}

void EventLog::clear()
{
    std::lock_guard<std::mutex> lock(mMutex);
    mEvents.clear();
}

} // namespace cloudsim
