#pragma once

#include <log4cplus/logger.h>

// The module's log category. Each file that includes this holds its own
// handle, so that the files of a target can also be compiled as one.
static log4cplus::Logger logger = log4cplus::Logger::getInstance("CB_Airable");
