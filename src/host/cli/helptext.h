#pragma once

#include "command.h"

#include <QString>

QString toolHelp();
QString commandHelp(CommandSpec const& spec);
// The commands of a shell session, one line each.
QString shellHelp();
