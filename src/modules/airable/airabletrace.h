#pragma once

#include "dbglog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>
#include <string>

// Logs "Enter " on construction and "Leave " on destruction at trace level,
// each with the function and, when given, its arguments.
class AirableScopedTrace
{
public:
    AirableScopedTrace(log4cplus::Logger const& logger, char const* signature, std::string arguments = {})
        : mLogger(logger)
    {
        if (!mLogger.isEnabledFor(log4cplus::TRACE_LOG_LEVEL))
            return;
        mText = dbglog_scopedFunction(signature, "CB_Airable");
        if (!arguments.empty())
            mText += ": " + arguments;
        LOG4CPLUS_TRACE(mLogger, "Enter " << mText);
    }
    ~AirableScopedTrace()
    {
        if (!mText.empty())
            LOG4CPLUS_TRACE(mLogger, "Leave " << mText);
    }
    AirableScopedTrace(AirableScopedTrace const&) = delete;
    AirableScopedTrace& operator=(AirableScopedTrace const&) = delete;

private:
    log4cplus::Logger const& mLogger;
    std::string mText;
};

#define AIRABLE_TRACE(logger, ...) AirableScopedTrace airableScopedTrace_(logger, Q_FUNC_INFO, ##__VA_ARGS__)
