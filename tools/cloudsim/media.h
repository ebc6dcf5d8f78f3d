#pragma once

#include <QString>

#include <string>

namespace cloudsim {

// Stand-ins for what the cloud's content servers deliver, so that a user
// interface shows pictures and a player has something to open.
std::string coverImage(QString const& name);
std::string silentWave(int seconds);

} // namespace cloudsim
