#pragma once

#include "cmreply.h"
#include "tarnplaylogicdata.h"

// Why a player is told to stop. The number travels as an int, so that
// callers may pass the platform's plain values.
namespace TarnPlayLogicStopReason {
enum Enum : int {
    // A content module or the service ordered it (a reaction, a logout).
    Service = 0,
    // The person using the device pressed stop.
    User = 1,
};
}

// The player as the content modules see it. The platform has one active
// player at a time; playerInstance() is null until one is set.
class PlayLogicInterface
{
public:
    virtual ~PlayLogicInterface() = default;

    static PlayLogicInterface* playerInstance();
    static void setPlayerInstance(PlayLogicInterface* player);

    // The player's state and the roles of the track it holds; the roles are
    // empty when nothing plays.
    virtual TarnPlayLogicData data() const = 0;
    // Pauses a playing track and lets a paused one go on.
    virtual CMReply<QVariant> pause() = 0;
    virtual CMReply<QVariant> next() = 0;
    // A TarnPlayLogicStopReason; a stop by the user is reported with the
    // error name TarnPlaylogicUserStop.
    virtual CMReply<QVariant> stop(int reason) = 0;
};
