#include "showntexts.h"
#include "testprograms.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <gtest/gtest.h>
#include <log4cplus/initializer.h>
#include <log4cplus/logger.h>

// Every test binary gets a QCoreApplication, so that event loops, queued
// calls and threads behave as they do in the host.
//
// A whole run also leaves behind which translatable texts it made the module
// show; a run of some tests only would leave texts out, so it leaves nothing.
int main(int argc, char** argv)
{
    log4cplus::Initializer logInit;
    log4cplus::Logger::getRoot().setLogLevel(log4cplus::OFF_LOG_LEVEL);
    QCoreApplication app(argc, argv);
    ShownTexts shown;
    QCoreApplication::installTranslator(&shown);
    ::testing::InitGoogleTest(&argc, argv);
    int const status = RUN_ALL_TESTS();
    if (::testing::GTEST_FLAG(filter) == "*" && !::testing::GTEST_FLAG(list_tests)
        && ::testing::UnitTest::GetInstance()->total_test_count() > 0)
        shown.write(QStringLiteral(TARN_SHOWN_TEXTS_DIR "/") + QFileInfo(QString::fromLocal8Bit(argv[0])).fileName()
                    + QStringLiteral(".txt"));
    return status;
}
