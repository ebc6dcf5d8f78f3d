#pragma once

#include <QString>

#include <string>

namespace cloudsim {

// Stand-ins for what the cloud's content servers deliver, so that a user
// interface shows pictures and a player has something to open.
std::string coverImage(QString const& name);
// A short wave whose tone depends on the name.
std::string toneWave(QString const& name, int seconds);

} // namespace cloudsim
