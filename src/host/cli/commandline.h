#pragma once

#include "command.h"
#include "hostsettings.h"

struct CommandLine
{
    HostSettings settings;
    Command command;
    bool toolHelp = false;
};

// Reads the tool's arguments (without the program name): settings may
// stand before or after the command, the configuration file is read first
// and the options override it. False, with the reason in *error, on bad
// usage.
bool parseCommandLine(QStringList const& arguments, CommandLine* line, QString* error);
