#include "hostlogging.h"

#include <QFile>
#include <QFileInfo>
#include <log4cplus/appender.h>
#include <log4cplus/configurator.h>
#include <log4cplus/fileappender.h>
#include <log4cplus/layout.h>
#include <log4cplus/logger.h>
#include <log4cplus/spi/loggingevent.h>

#include <cerrno>
#include <sstream>
#include <unistd.h>

namespace {

// Writes each log line to standard error with one write. The module logs
// from its own thread while the tool prints its errors from the main one; a
// line written in pieces, as the stream appenders do, could be split by the
// tool's line or split it.
class StandardErrorLines : public log4cplus::Appender
{
public:
    ~StandardErrorLines() override { destructorImpl(); }
    void close() override { closed = true; }

protected:
    void append(log4cplus::spi::InternalLoggingEvent const& event) override
    {
        log4cplus::tostringstream line;
        layout->formatAndAppend(line, event);
        std::string const text = LOG4CPLUS_TSTRING_TO_STRING(line.str());
        char const* data = text.data();
        std::size_t left = text.size();
        while (left > 0) {
            ssize_t const written = ::write(STDERR_FILENO, data, left);
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                return;
            data += written;
            left -= std::size_t(written);
        }
    }
};

log4cplus::LogLevel levelOf(QString const& name)
{
    if (name == QLatin1String("trace"))
        return log4cplus::TRACE_LOG_LEVEL;
    if (name == QLatin1String("debug"))
        return log4cplus::DEBUG_LOG_LEVEL;
    if (name == QLatin1String("info"))
        return log4cplus::INFO_LOG_LEVEL;
    if (name == QLatin1String("error"))
        return log4cplus::ERROR_LOG_LEVEL;
    return log4cplus::WARN_LOG_LEVEL;
}

} // namespace

bool configureLogging(HostSettings const& settings, QString* error)
{
    if (!settings.logConfig.isEmpty()) {
        if (!QFileInfo(settings.logConfig).isReadable()) {
            *error = QStringLiteral("cannot read log configuration %1").arg(settings.logConfig);
            return false;
        }
        log4cplus::PropertyConfigurator::doConfigure(settings.logConfig.toStdString());
        return true;
    }
    log4cplus::SharedAppenderPtr appender;
    if (settings.logFile.isEmpty()) {
        appender = new StandardErrorLines;
    } else {
        QFile probe(settings.logFile);
        if (!probe.open(QIODevice::Append)) {
            *error = QStringLiteral("cannot write log %1: %2").arg(settings.logFile, probe.errorString());
            return false;
        }
        appender = new log4cplus::FileAppender(settings.logFile.toStdString(), std::ios_base::app);
    }
    appender->setLayout(std::make_unique<log4cplus::PatternLayout>("%D{%H:%M:%S.%q} %-5p %c: %m%n"));
    log4cplus::Logger root = log4cplus::Logger::getRoot();
    root.removeAllAppenders();
    root.addAppender(appender);
    log4cplus::LogLevel const level = levelOf(settings.logLevel);
    root.setLogLevel(qMax(level, log4cplus::WARN_LOG_LEVEL));
    log4cplus::Logger::getInstance("CB_Airable").setLogLevel(level);
    return true;
}
