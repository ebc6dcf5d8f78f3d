#pragma once

#include "boundedlog.h"
#include "call.h"
#include "playbackevent.h"

#include <QList>

#include <functional>
#include <mutex>

namespace cloudsim {

// The playback events the devices report: a stream's redirect names a URL
// per event word, "<...>/events/<word>?stream=<stream id>", and each call of
// one is kept here, the latest `limit` of them within `bytes` of memory.
// Safe to use from any thread.
class EventLog
{
public:
    EventLog(int limit, qint64 bytes);

    using Listener = std::function<void(PlaybackEvent const&)>;

    // Keeps the call if it reports an event; false when it doesn't.
    bool record(Call const& call);
    QList<PlaybackEvent> events() const;
    void clear();
    // Tells the listener of each event kept from now on, on the thread that
    // serves the call; null stops that. Once this returns, the listener
    // given before is not running and is not called again. The listener
    // may read the log, but must not set a listener.
    void setListener(Listener listener);

private:
    static qint64 footprintOf(PlaybackEvent const& event);

    mutable std::mutex mMutex;
    BoundedLog<PlaybackEvent, footprintOf> mEvents;
    // Apart from the log's, so that a listener can read the log.
    std::mutex mListenerMutex;
    Listener mListener;
};

} // namespace cloudsim
