#include "hostlogging.h"

#include <QFile>
#include <QFileInfo>
#include <log4cplus/configurator.h>
#include <log4cplus/consoleappender.h>
#include <log4cplus/fileappender.h>
#include <log4cplus/layout.h>
#include <log4cplus/logger.h>

namespace {

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
        appender = new log4cplus::ConsoleAppender(true, true);
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
