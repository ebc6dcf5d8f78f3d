#pragma once

#include <QJsonObject>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

// The events the page hears on its one stream: row changes, notifications,
// the player's commands, a login's end. Each gets the next number, which a
// page that lost its stream names to get what it missed (as far as the hub
// still keeps it). Safe to use from any thread.
class EventHub
{
public:
    struct Event
    {
        quint64 id = 0;
        std::string type;
        std::string data; // compact JSON
    };

    void publish(std::string const& type, QJsonObject const& data);
    // The number of the latest event; 0 before the first.
    quint64 latest() const;
    // The events after the given number, waiting up to wait for one to
    // come; none when the wait ran out or the hub closed.
    std::vector<Event> after(quint64 id, std::chrono::milliseconds wait) const;
    // Wakes every waiter; nothing waits from then on.
    void close();
    bool isClosed() const;

    // An event in the stream's wire form.
    static std::string wireText(Event const& event);

private:
    // A page that comes back after longer than this many events starts afresh.
    static constexpr std::size_t kKept = 200;

    mutable std::mutex mMutex;
    mutable std::condition_variable mArrived;
    std::deque<Event> mEvents;
    quint64 mLatest = 0;
    bool mClosed = false;
};
