#pragma once

#include <log4cplus/logger.h>

// The platform's log categories. Each file that includes this holds its own
// handles, so that the files of a target can also be compiled as one.
static log4cplus::Logger logger = log4cplus::Logger::getInstance("TarnApi");
static log4cplus::Logger httpLogger = log4cplus::Logger::getInstance("HttpClient");
