#pragma once

#include <QMutex>
#include <QStringList>
#include <log4cplus/appender.h>
#include <log4cplus/logger.h>

// Captures the lines of one logger in memory while it lives; tests assert on
// log texts because they are part of the behaviour.
class LogCapture
{
public:
    explicit LogCapture(char const* loggerName = "CB_Airable",
                        log4cplus::LogLevel level = log4cplus::TRACE_LOG_LEVEL);
    ~LogCapture();

    QStringList lines() const;
    // Lines logged at exactly this level.
    QStringList lines(log4cplus::LogLevel level) const;
    int count(QString const& text) const;
    bool contains(QString const& text) const { return count(text) > 0; }
    void clear();

private:
    class Appender;
    log4cplus::Logger mLogger;
    log4cplus::LogLevel mOldLevel;
    log4cplus::SharedAppenderPtr mAppender;
    Appender* mImpl;
};
