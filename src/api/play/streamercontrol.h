#pragma once

#include "cmreply.h"
#include "tarnroles.h"

#include <QHash>
#include <atomic>

// What a streamer tells the play logic that drives it, about what it did
// on its own: a start, the wish for what follows, an end. What it was told
// to do (stop, seek) it does without reporting back, except a pause.
// Calls may come from any thread.
class StreamerEvents
{
public:
    virtual ~StreamerEvents() = default;

    // The media began to play: the one given to play(), or the one given to
    // setNext() when the one before it ended, with no gap between the two.
    virtual void mediaStarted(TarnRoles const& media) = 0;
    // The streamer can take the media that follows now (setNext or noNext).
    virtual void nextMediaWanted() = 0;
    virtual void pausedChanged(bool paused) = 0;
    // The position in the media, in milliseconds.
    virtual void playTimeChanged(qint64 ms) = 0;
    // The media ended and nothing followed; the streamer is idle.
    virtual void mediaEnded() = 0;
    // The media broke off with this error name; the streamer is idle.
    virtual void mediaFailed(QString const& errorName) = 0;
};

// A streamer as a play logic commands it. Each command is answered once the
// streamer took it; what then happens comes back through StreamerEvents.
// Commands may be given from any thread.
class StreamerControl
{
public:
    virtual ~StreamerControl() = default;

    // Plays the media at once, in place of anything it holds. The options
    // are the play logic's words to the streamer, passed as they are.
    virtual CMReply<QVariant> play(TarnRoles const& media, QHash<QString, QVariant> const& options) = 0;
    // What plays when the media now playing ends.
    virtual CMReply<QVariant> setNext(TarnRoles const& media, QHash<QString, QVariant> const& options) = 0;
    // Nothing follows the media now playing.
    virtual CMReply<QVariant> noNext() = 0;
    virtual CMReply<QVariant> seek(qint64 ms) = 0;
    virtual CMReply<QVariant> pause() = 0;
    virtual CMReply<QVariant> resume() = 0;
    virtual CMReply<QVariant> stop() = 0;

    // Who hears what the streamer does; null for nobody.
    void setEvents(StreamerEvents* events) { mEvents.store(events); }
    // Lets go of these events, and only of these: a play logic that goes
    // leaves alone a streamer that another play logic took since.
    void releaseEvents(StreamerEvents* events) { mEvents.compare_exchange_strong(events, nullptr); }

protected:
    StreamerEvents* events() const { return mEvents.load(); }

private:
    std::atomic<StreamerEvents*> mEvents{nullptr};
};
