#include "childprocess.h"
#include "cloudserver.h"
#include "patience.h"
#include "testprograms.h"

#include <QElapsedTimer>
#include <QRegularExpression>

#include <httplib.h>

#include <gtest/gtest.h>

namespace {

struct ProgramRun
{
    int exitCode = -1;
    QString err;
};

// Runs the program to its end; for arguments that make it stop at once.
ProgramRun runCloud(QStringList const& arguments)
{
    ChildProcess cloud(programCommand(QStringLiteral(CLOUDSIM_PROGRAM), arguments));
    ProgramRun run;
    if (!cloud.waitForFinished(kPatienceMs))
        return run;
    run.exitCode = cloud.exitCode();
    run.err = QString::fromUtf8(cloud.readAllStandardError());
    return run;
}

TEST(CloudProgram, aBadFaultIsBadUsageAndSaysWhy)
{
    ProgramRun const unknown = runCloud({"--port", "0", "--fault", "/x=melt"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.err.startsWith("airable-cloudsim: bad --fault '/x=melt': unknown kind 'melt'")) << unknown.err.toStdString();

    ProgramRun const route = runCloud({"--port", "0", "--fault", "deezer=close"});
    EXPECT_EQ(route.exitCode, 2);
    EXPECT_TRUE(route.err.contains("the route 'deezer' doesn't start with '/'")) << route.err.toStdString();

    EXPECT_EQ(runCloud({"--no-such-option"}).exitCode, 2);
}

TEST(CloudProgram, aPortInUseEndsItWithAnError)
{
    cloudsim::CloudServer taken;
    ASSERT_TRUE(taken.start());
    ProgramRun const run = runCloud({"--port", QString::number(taken.port())});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err.trimmed(),
              QString("airable-cloudsim: port %1 of 127.0.0.1 is in use").arg(taken.port()));
}

TEST(CloudProgram, verboseLogsAConnectionThatEnds)
{
    ChildProcess cloud(programCommand(QStringLiteral(CLOUDSIM_PROGRAM), {"--port", "0", "--verbose"}));
    QString const banner = QString::fromUtf8(cloud.readLine(kPatienceMs));
    QRegularExpressionMatch const address = QRegularExpression("http://127\\.0\\.0\\.1:(\\d+)").match(banner);
    ASSERT_TRUE(address.hasMatch()) << banner.toStdString();

    {
        httplib::Client client("127.0.0.1", address.captured(1).toInt());
        client.set_keep_alive(true);
        auto const cover = client.Get("/images/x.svg");
        ASSERT_TRUE(cover);
        auto const again = client.Get("/images/y.svg");
        ASSERT_TRUE(again);
    }
    QString log;
    QElapsedTimer clock;
    clock.start();
    while (!log.contains("closed") && clock.elapsed() < kPatienceMs) {
        cloud.waitForReadyRead(100);
        log += QString::fromUtf8(cloud.readAllStandardError());
    }
    cloud.terminate();
    EXPECT_TRUE(cloud.waitForFinished(kPatienceMs));
    EXPECT_EQ(cloud.exitCode(), 0);
    EXPECT_TRUE(log.contains(QRegularExpression("GET /images/y.svg -> 200")));
    EXPECT_TRUE(log.contains(QRegularExpression("connection 127\\.0\\.0\\.1:\\d+ closed after 2 requests"))) << log.toStdString();
}

} // namespace
