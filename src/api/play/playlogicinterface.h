#pragma once

#include "cmreply.h"
#include "tarnroles.h"

// The player as the content modules see it. The platform has one active
// player at a time; playerInstance() is null until one is set.
class PlayLogicInterface
{
public:
    virtual ~PlayLogicInterface() = default;

    static PlayLogicInterface* playerInstance();
    static void setPlayerInstance(PlayLogicInterface* player);

    // The roles of the track now playing; empty when nothing plays.
    virtual TarnRoles data() const = 0;
    virtual CMReply<QVariant> pause() = 0;
    virtual CMReply<QVariant> next() = 0;
    virtual CMReply<QVariant> stop(int reason) = 0;
};
