#pragma once

#include "replywaiter.h"

#include "cmpath.h"
#include "tarnplaylogicdata.h"
#include "tarnplaylogicrecords.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <functional>
#include <memory>

class SimulatedStreamer;

// A program played as a device plays one: the row goes to its play logic
// through the stand-in streamer, the play logic sends track after track,
// and the person skips, pauses, rates and stops through the play logic's
// path, as a device's interface does. Time is virtual: each track is moved
// to its end at once, with a pause before the end in which the play logic
// says what follows, as it would while the track plays out.
class ProgramPlayer
{
public:
    enum class Status
    {
        Done,
        Refused, // the play logic answered with an error: errorName, errorText, offer
        Failed,  // the player gave up on a track, or nothing started
        TimedOut,
        Interrupted,
        Terminated,
    };

    struct Outcome
    {
        Status status = Status::Done;
        // The tracks that started, as {"title", "artist", "uri"}.
        QJsonArray tracks;
        // What the play logic answered a command with, when it said
        // something: {"title", "description"}, as a rating's message.
        QJsonObject answer;
        QString errorName;
        QString errorText;
        // What a refusal offers instead, as {"title", "description", "url"}.
        QJsonObject offer;
    };

    // Hears of each track as it starts, before the call that started it
    // returns, with its number in what the program played.
    using Started = std::function<void(int number, QJsonObject const& track)>;

    ProgramPlayer(ReplyWaiter const& waiter, Started started);
    // A program still playing is stopped, as a person leaving it does.
    ~ProgramPlayer();

    // Plays the program row until the given number of its tracks started,
    // or until it ends or fails.
    Outcome play(TarnRoles const& row, int tracks);
    // Gives the play logic one of the commands of TarnPlayLogicRoles and
    // waits until the streamer did what it was told: for next and previous
    // a new track started (or the same one went back to its start).
    Outcome command(QString const& role);
    // The play logic's data as a client reads it from its path.
    Outcome read(TarnPlayLogicData* data) const;
    Outcome startedSince(int before, Outcome outcome, bool newTrackExpected) const;
    // Stops what plays, as a person presses stop on the player, and leaves
    // the module a moment to pass the stop on to the cloud.
    void stop();

    bool isPlaying() const;
    CMPath playLogic() const { return mPlayLogic; }
    // The stream the streamer plays now.
    QString uri() const;
    qint64 positionMs() const;
    // What the streamer did, line by line, since it was made.
    QJsonArray steps() const { return mSteps; }

    // A track's rating as a word, or nothing when it can't be rated.
    static QString ratingName(TarnRoles const& track);
    // What a finished reply of the play logic to a command says: Done, with
    // what it answered, or Refused.
    static Outcome answerOf(CMReply<QVariant> const& finished);
    // A refusal in a person's words, what it offers instead included.
    static QString refusalText(Outcome const& refused, QString const& what);
    // The controls a play logic offers for what plays, by name.
    static QJsonArray controlNames(TarnPlayLogicControls const& controls);
    // The track as {"title", "artist", "uri"}.
    static QJsonObject trackObject(TarnRoles const& roles, QString const& uri);

private:
    // Serves events until done() holds, looking again at every state and
    // step of the streamer.
    ReplyWaiter::Outcome waitUntil(std::function<bool()> const& done) const;
    // Moves the track that plays to its end, leaving the play logic its
    // turn to give what follows.
    Outcome playOut();
    void noteState(TarnPlayLogicData const& data);
    Outcome failure(ReplyWaiter::Outcome waited) const;
    Outcome settle(CMReply<QVariant> const& reply) const;

    ReplyWaiter mWaiter;
    Started mStarted;
    std::unique_ptr<SimulatedStreamer> mStreamer;
    CMPath mPlayLogic;
    QJsonArray mSteps;
    // Every stream that started, so that a start is told from a pause's end.
    QSet<int> mStreams;
    QJsonArray mTracks;
};
