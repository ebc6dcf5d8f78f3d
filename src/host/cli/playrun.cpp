#include "playrun.h"

#include "simulatedstreamer.h"

#include <QTimer>

namespace {

// Room for the module to take in the cloud's answer to the last event, and
// for a notification that the answer brings to be shown, before the module
// may go.
int const kAnswerRoomMs = 200;
int const kHearingTickMs = 10;

PlayRun::Status statusOf(ReplyWaiter::Outcome outcome)
{
    switch (outcome) {
    case ReplyWaiter::Outcome::Finished:
        break;
    case ReplyWaiter::Outcome::TimedOut:
        return PlayRun::Status::TimedOut;
    case ReplyWaiter::Outcome::Interrupted:
        return PlayRun::Status::Interrupted;
    case ReplyWaiter::Outcome::Terminated:
        return PlayRun::Status::Terminated;
    }
    return PlayRun::Status::Played;
}

// Counts the states that the cloud hears of: it gets an event when a stream
// it handed out starts or goes on (start), pauses, stops or fails; a state
// said again, and anything before the first stream, is no news.
class EventTally
{
public:
    void note(TarnPlayLogicData const& data)
    {
        int const state = data.state();
        if (state == TarnPlayLogicData::Playing || state == TarnPlayLogicData::Paused)
            mStreamHandedOut = true;
        if (mStreamHandedOut && state != TarnPlayLogicData::Preparing && state != mLastState)
            ++mEvents;
        mLastState = state;
    }
    int events() const { return mEvents; }

private:
    bool mStreamHandedOut = false;
    int mLastState = -1;
    int mEvents = 0;
};

} // namespace

PlayRun::PlayRun(ReplyWaiter const& waiter, CloudEar const& ear) : mWaiter(waiter), mEar(ear) {}

PlayRun::Outcome PlayRun::run(TarnRoles const& row) const
{
    Outcome outcome;
    SimulatedStreamer streamer;
    streamer.makeActive();
    QObject::connect(&streamer, &SimulatedStreamer::step, [&outcome](QString const& s) { outcome.steps << s; });
    EventTally tally;
    CMReply<QVariant> const settled;
    QObject::connect(&streamer, &SimulatedStreamer::stateChanged, [&tally, settled](TarnPlayLogicData const& state) {
        tally.note(state);
        if (state.state() == TarnPlayLogicData::Playing || state.state() == TarnPlayLogicData::Stopped)
            settled.setValue(state.state());
    });

    // Waits until the cloud heard an event call for each state so far;
    // false when the wait was abandoned.
    QString stream;
    auto const hear = [&]() {
        if (!mEar.hears())
            return true;
        CMReply<QVariant> const heard;
        QTimer tick;
        auto const check = [&] {
            if (mEar.callsAfter(stream).size() >= tally.events())
                heard.setValue(QVariant());
        };
        QObject::connect(&tick, &QTimer::timeout, check);
        tick.start(kHearingTickMs);
        check();
        ReplyWaiter::Outcome const waited = mWaiter.wait(heard);
        QStringList const calls = mEar.callsAfter(stream);
        for (int i = outcome.events.size(); i < calls.size(); ++i)
            outcome.steps << QStringLiteral("event call %1").arg(calls[i]);
        outcome.events = calls;
        if (waited == ReplyWaiter::Outcome::TimedOut) {
            outcome.steps << QStringLiteral("the cloud heard no event call for the last state within %1 s")
                                 .arg(mWaiter.timeoutMs() / 1000);
            return true;
        }
        outcome.status = statusOf(waited);
        return outcome.status == Status::Played;
    };

    streamer.play(row);
    outcome.status = statusOf(mWaiter.wait(settled));
    if (outcome.status != Status::Played) {
        streamer.stop(TarnPlayLogicStopReason::User);
        return outcome;
    }
    if (streamer.state() != TarnPlayLogicData::Playing) {
        outcome.status = Status::NotPlayed;
        outcome.errorName = streamer.errorName();
        outcome.errorText = streamer.errorText();
        return outcome;
    }
    outcome.uri = streamer.uri();
    stream = streamer.resource().data().toString();
    if (!hear()) {
        streamer.stop(TarnPlayLogicStopReason::User);
        return outcome;
    }
    streamer.stop(TarnPlayLogicStopReason::User);
    if (!hear())
        return outcome;

    CMReply<QVariant> const room;
    QTimer::singleShot(kAnswerRoomMs, [room] { room.setValue(QVariant()); });
    outcome.status = statusOf(mWaiter.wait(room));
    return outcome;
}
