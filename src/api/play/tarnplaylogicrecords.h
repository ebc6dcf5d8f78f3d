#pragma once

#include "tarnroles.h"

#include <QStringList>

// The commands a client gives a play logic: the role of a set-data request
// on the play logic's path. The value depends on the command.
namespace TarnPlayLogicRoles {
// Value: a TarnPlayLogicPlayArgs.
QString const& Play();
// Value: a TarnPlayLogicStopReason as a number; none counts as the user's.
QString const& Stop();
// Pauses what plays and lets what is paused go on; no value.
QString const& Pause();
QString const& Next();
QString const& Previous();
QString const& Like();
QString const& Dislike();
// Value: the position to go to, in milliseconds.
QString const& SeekTime();
// Value: one of the play logic's supported play modes.
QString const& PlayMode();
}

// Ways of going through what a play logic plays.
namespace TarnPlayMode {
QString const& Normal();
QString const& Shuffle();
QString const& RepeatOne();
QString const& RepeatAll();
}

// Entries a play logic publishes in its TarnPlayLogicData beside the media
// the player holds: they describe the play logic, not the media, and so
// survive a change of media.
namespace TarnPlayLogicDataKey {
// A TarnPlayLogicControls.
QString const& Controls();
// An encoded path where a client finds the context of what plays.
QString const& ContextPath();
// The play mode in force.
QString const& PlayMode();
}

// What a user interface may offer for what plays now. A control left unset
// is off.
class TarnPlayLogicControls : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnPlayLogicControls() = default;
    TarnPlayLogicControls(TarnHash const& h) : TarnHash(h) {}

    TarnPlayLogicControls& setPause(bool v) { insert(QStringLiteral("pause"), v); return *this; }
    bool pause() const { return value(QStringLiteral("pause")).toBool(); }
    TarnPlayLogicControls& setNext_(bool v) { insert(QStringLiteral("next"), v); return *this; }
    bool next_() const { return value(QStringLiteral("next")).toBool(); }
    TarnPlayLogicControls& setPrevious(bool v) { insert(QStringLiteral("previous"), v); return *this; }
    bool previous() const { return value(QStringLiteral("previous")).toBool(); }
    TarnPlayLogicControls& setSeekTime(bool v) { insert(QStringLiteral("seekTime"), v); return *this; }
    bool seekTime() const { return value(QStringLiteral("seekTime")).toBool(); }
    TarnPlayLogicControls& setLike(bool v) { insert(QStringLiteral("like"), v); return *this; }
    bool like() const { return value(QStringLiteral("like")).toBool(); }
    TarnPlayLogicControls& setDislike(bool v) { insert(QStringLiteral("dislike"), v); return *this; }
    bool dislike() const { return value(QStringLiteral("dislike")).toBool(); }
    // The play modes a client may choose among (TarnPlayMode words).
    TarnPlayLogicControls& setPlayMode(QStringList const& modes) { insert(QStringLiteral("playMode"), modes); return *this; }
    QStringList playMode() const { return value(QStringLiteral("playMode")).toStringList(); }
};

// The value of a play command: the row the client chose, with its roles.
class TarnPlayLogicPlayArgs : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnPlayLogicPlayArgs() = default;
    TarnPlayLogicPlayArgs(TarnHash const& h) : TarnHash(h) {}

    TarnPlayLogicPlayArgs& setMediaRoles(TarnRoles const& r) { insert(QStringLiteral("mediaRoles"), r.__variant()); return *this; }
    TarnRoles mediaRoles() const { return TarnRoles(value(QStringLiteral("mediaRoles")).toHash()); }
};

namespace TarnRatingType {
enum Enum : int {
    // Liked, disliked or neither.
    ThreeState = 0,
};
}

namespace TarnRatingThreeStateValues {
enum Enum : int {
    Neutral = 0,
    Positive = 1,
    Negative = 2,
};
}

// How the user rated a track.
class TarnRating : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnRating() = default;
    TarnRating(TarnHash const& h) : TarnHash(h) {}

    TarnRating& setType(TarnRatingType::Enum t) { insert(QStringLiteral("type"), int(t)); return *this; }
    int type() const { return value(QStringLiteral("type")).toInt(); }
    TarnRating& setThreeStateValue(TarnRatingThreeStateValues::Enum v)
    {
        insert(QStringLiteral("threeStateValue"), int(v));
        return *this;
    }
    TarnRatingThreeStateValues::Enum threeStateValue() const
    {
        return TarnRatingThreeStateValues::Enum(value(QStringLiteral("threeStateValue")).toInt());
    }
};

// Registers the play library's records with Qt's meta-type system, so that
// queued calls and signals can carry them between threads. Idempotent.
void tarnPlayRegisterMetaTypes();

Q_DECLARE_METATYPE(TarnPlayLogicControls)
Q_DECLARE_METATYPE(TarnPlayLogicPlayArgs)
Q_DECLARE_METATYPE(TarnRating)
