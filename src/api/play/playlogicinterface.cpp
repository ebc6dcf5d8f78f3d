#include "playlogicinterface.h"

#include <atomic>

namespace {
std::atomic<PlayLogicInterface*> activePlayer{nullptr};
}

PlayLogicInterface* PlayLogicInterface::playerInstance()
{
    return activePlayer.load();
}

void PlayLogicInterface::setPlayerInstance(PlayLogicInterface* player)
{
    activePlayer.store(player);
}
