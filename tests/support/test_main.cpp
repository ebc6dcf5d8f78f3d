#include <QCoreApplication>
#include <gtest/gtest.h>
#include <log4cplus/initializer.h>
#include <log4cplus/logger.h>

// Every test binary gets a QCoreApplication, so that event loops, queued
// calls and threads behave as they do in the host.
int main(int argc, char** argv)
{
    log4cplus::Initializer logInit;
    log4cplus::Logger::getRoot().setLogLevel(log4cplus::OFF_LOG_LEVEL);
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
