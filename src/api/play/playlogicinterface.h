#pragma once

#include "cmreply.h"
#include "tarnplaylogicdata.h"

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
    virtual CMReply<QVariant> stop(int reason) = 0;
};
