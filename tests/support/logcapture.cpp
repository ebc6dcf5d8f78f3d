#include "logcapture.h"

#include <log4cplus/spi/loggingevent.h>

#include <QMutexLocker>
#include <QPair>
#include <QVector>

class LogCapture::Appender : public log4cplus::Appender
{
public:
    ~Appender() override { destructorImpl(); }
    void close() override {}

    mutable QMutex mutex;
    QVector<QPair<log4cplus::LogLevel, QString>> events;

protected:
    void append(log4cplus::spi::InternalLoggingEvent const& event) override
    {
        QMutexLocker lock(&mutex);
        events.append({event.getLogLevel(), QString::fromStdString(event.getMessage())});
    }
};

LogCapture::LogCapture(char const* loggerName, log4cplus::LogLevel level)
    : mLogger(log4cplus::Logger::getInstance(loggerName))
    , mOldLevel(mLogger.getLogLevel())
    , mImpl(new Appender)
{
    mAppender = log4cplus::SharedAppenderPtr(mImpl);
    mAppender->setName(LOG4CPLUS_TEXT("capture"));
    mLogger.addAppender(mAppender);
    mLogger.setLogLevel(level);
}

LogCapture::~LogCapture()
{
    mLogger.removeAppender(mAppender);
    mLogger.setLogLevel(mOldLevel);
}

QStringList LogCapture::lines() const
{
    QMutexLocker lock(&mImpl->mutex);
    QStringList out;
    for (auto const& e : mImpl->events)
        out << e.second;
    return out;
}

QStringList LogCapture::lines(log4cplus::LogLevel level) const
{
    QMutexLocker lock(&mImpl->mutex);
    QStringList out;
    for (auto const& e : mImpl->events)
        if (e.first == level)
            out << e.second;
    return out;
}

int LogCapture::count(QString const& text) const
{
    int n = 0;
    for (auto const& l : lines())
        if (l.contains(text))
            ++n;
    return n;
}

void LogCapture::clear()
{
    QMutexLocker lock(&mImpl->mutex);
    mImpl->events.clear();
}
