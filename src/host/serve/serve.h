#pragma once

#include "cloudear.h"
#include "command.h"
#include "hostsettings.h"
#include "pathtext.h"

class NotificationDisplay;

// tarn-host serve: the web explorer, until Ctrl-C. Returns the exit status.
int runServe(Command const& command, HostSettings const& settings, PathText const& paths, CloudEar const& ear,
             NotificationDisplay* notifications);
