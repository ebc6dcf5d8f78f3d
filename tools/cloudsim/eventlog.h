#pragma once

#include "call.h"
#include "playbackevent.h"

#include <QList>

#include <mutex>

namespace cloudsim {

// The playback events the devices report: a stream's redirect names a URL
// per event word, "<...>/events/<word>?stream=<stream id>", and each call of
// one is kept here, the latest `limit` of them. Safe to use from any thread.
class EventLog
{
public:
    explicit EventLog(int limit);

    // Keeps the call if it reports an event; false when it doesn't.
    bool record(Call const& call);
    QList<PlaybackEvent> events() const;
    void clear();

private:
    int const mLimit;
    mutable std::mutex mMutex;
    QList<PlaybackEvent> mEvents;
};

} // namespace cloudsim
