#pragma once

#include "hostsettings.h"

// Sets up log4cplus: a properties file when one is given, else one
// appender (standard error or a file) with the module's logger at the
// chosen level; other loggers report warnings and errors. False, with the
// reason in *error, when a file can't be used.
bool configureLogging(HostSettings const& settings, QString* error);
