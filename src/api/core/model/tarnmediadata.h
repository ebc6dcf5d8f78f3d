#pragma once

#include "tarnhash.h"

// What a row offers to the player. The player's records fill it out; the
// content model only carries it as a role.
class TarnMediaData : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnMediaData() = default;
};

Q_DECLARE_METATYPE(TarnMediaData)
