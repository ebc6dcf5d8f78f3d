#include "eventhub.h"

#include <QJsonDocument>

void EventHub::publish(std::string const& type, QJsonObject const& data)
{
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mEvents.push_back({++mLatest, type, QJsonDocument(data).toJson(QJsonDocument::Compact).toStdString()});
        if (mEvents.size() > kKept)
            mEvents.pop_front();
    }
    mArrived.notify_all();
}

quint64 EventHub::latest() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mLatest;
}

std::vector<EventHub::Event> EventHub::after(quint64 id, std::chrono::milliseconds wait) const
{
    std::unique_lock<std::mutex> lock(mMutex);
    mArrived.wait_for(lock, wait, [&] { return mClosed || mLatest > id; });
    std::vector<Event> events;
    if (mClosed)
        return events;
    for (Event const& event : mEvents) {
        if (event.id > id)
            events.push_back(event);
    }
    return events;
}

void EventHub::close()
{
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mClosed = true;
    }
    mArrived.notify_all();
}

bool EventHub::isClosed() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mClosed;
}

std::string EventHub::wireText(Event const& event)
{
    return "id: " + std::to_string(event.id) + "\nevent: " + event.type + "\ndata: " + event.data + "\n\n";
}
