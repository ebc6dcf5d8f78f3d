#pragma once

#include <log4cplus/logger.h>

// The simulated cloud's log category. Each file that includes this holds its
// own handle, so that its files can also be compiled as one.
static log4cplus::Logger logger = log4cplus::Logger::getInstance("CloudSim");
