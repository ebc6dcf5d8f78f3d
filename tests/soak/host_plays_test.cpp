#include "childprocess.h"
#include "program.h"
#include "testprograms.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <iostream>

namespace {

// Enough plays to fill what the host keeps by design, the logs of its
// cloud among them, before the measured ones.
constexpr int kWarmUpPlays = 70;
constexpr int kPlays = 100;
// The host grows by about 100 KiB over the measured plays; a few kilobytes
// kept for each play take it past this.
constexpr long kPlaysGrowthKiB = 400;

long residentKiB(pid_t pid)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (QByteArray const& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    }
    return -1;
}

// One play after another, as a person types them; false, with the failure
// added, when one did not play.
bool play(ChildProcess* host, int times)
{
    for (int i = 0; i < times; ++i) {
        QByteArray const line = host->write("play /airable/radios/r1001\n") ? host->readLine() : QByteArray();
        if (QJsonDocument::fromJson(line).object().value("state").toString() != QLatin1String("playing")) {
            ADD_FAILURE() << "play " << i + 1 << ": " << line.toStdString()
                          << host->readAllStandardError().toStdString();
            return false;
        }
    }
    return true;
}

} // namespace

// A person plays a radio again and again in one shell, with the cloud in
// the host's process: whatever each play leaves behind, in the host, the
// module or the cloud's logs, shows as growth of the host.
TEST(HostPlays, playingOneRowAgainAndAgainLeavesTheHostsSizeFlat)
{
    // A sanitizer keeps freed memory in quarantine, and an emulator's
    // resident size holds the code it has translated: no figure to hold
    // there, and under an emulator, whose plays are slow, a few plays do.
    bool const measured = !sanitized() && !runsUnderEmulator();
    int const warmUpPlays = runsUnderEmulator() ? 5 : kWarmUpPlays;
    int const plays = runsUnderEmulator() ? 5 : kPlays;
    ChildProcess host(programCommand(QStringLiteral(TARN_HOST_BINARY), {"--json", "shell"}));
    ASSERT_TRUE(host.isStarted());
    ASSERT_TRUE(play(&host, warmUpPlays));
    long const before = residentKiB(host.pid());
    ASSERT_TRUE(play(&host, plays));
    long const after = residentKiB(host.pid());
    host.closeInput();
    EXPECT_TRUE(host.waitForFinished());
    EXPECT_EQ(host.exitCode(), 0) << host.readAllStandardError().toStdString();

    std::cout << "tarn-host: " << before << " KiB after " << warmUpPlays << " plays, " << after << " KiB after "
              << plays << " more" << std::endl;
    if (measured) {
        ASSERT_GT(before, 0);
        EXPECT_LE(after - before, kPlaysGrowthKiB);
    }
}
