#pragma once

#include "cloudear.h"
#include "replywaiter.h"

#include "tarnroles.h"

#include <QJsonArray>
#include <QStringList>

// One play as a person does it on a device: the stand-in player resolves
// the row through the module's prePlay road, trying the row's other
// resources as it goes; once it plays, the person stops it. Each state the
// player reports goes to the cloud as an event; with the cloud in this
// process, the run waits until the cloud has heard the event of each state
// it reached, and lists those calls among its steps.
class PlayRun
{
public:
    enum class Status
    {
        Played,
        NotPlayed, // the player gave up; errorName and errorText say why
        TimedOut,
        Interrupted,
        Terminated,
    };

    struct Outcome
    {
        Status status = Status::NotPlayed;
        QJsonArray steps;
        QStringList events; // the event calls the cloud heard
        QString uri;        // the stream it played
        QString errorName;
        QString errorText;
    };

    PlayRun(ReplyWaiter const& waiter, CloudEar const& ear);

    Outcome run(TarnRoles const& row) const;

private:
    ReplyWaiter mWaiter;
    CloudEar mEar;
};
