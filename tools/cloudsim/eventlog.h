#pragma once

#include "call.h"
#include "playbackevent.h"

#include <QList>

#include <functional>
#include <mutex>

namespace cloudsim {

// The playback events the devices report: a stream's redirect names a URL
// per event word, "<...>/events/<word>?stream=<stream id>", and each call of
// one is kept here, the latest `limit` of them. Safe to use from any thread.
class EventLog
{
public:
    explicit EventLog(int limit);

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
    int const mLimit;
    mutable std::mutex mMutex;
    QList<PlaybackEvent> mEvents;
    // Apart from the log's, so that a listener can read the log.
    std::mutex mListenerMutex;
    Listener mListener;
};

} // namespace cloudsim
