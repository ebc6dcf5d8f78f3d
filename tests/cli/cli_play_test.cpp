#include "sharedcloud.h"

#include <QJsonArray>

namespace {

// Radio r1001 has three streams; with no bitrate limit the player tries
// them best first: streams/3 (256), streams/1 (128), streams/2 (64).
QString const kRadio("/airable/radios/r1001");

class CliPlay : public SharedCloud
{
protected:
    QJsonObject errorOf(HostRun const& run) const { return run.objects().value(0).value("error").toObject(); }
};

} // namespace

TEST_F(CliPlay, aRefusedStreamIsRetriedWithTheItemsNextResource)
{
    cloud->setFault(kRadio + "/streams/3", cloudsim::Fault::status(503));
    HostRun const run = host({"--json", "play", kRadio});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QJsonObject const played = run.objects().value(0);
    EXPECT_TRUE(played.value("uri").toString().endsWith("/media/r1001-128.mp3")) << run.out.toStdString();
    QStringList steps;
    for (auto const& s : played.value("steps").toArray())
        steps << s.toString();
    EXPECT_TRUE(steps.contains("retry with resource 1")) << steps.join('\n').toStdString();
    EXPECT_EQ(queriesTo(kRadio + "/streams/3").size(), 1);
    EXPECT_EQ(queriesTo(kRadio + "/streams/1").size(), 1);
    EXPECT_TRUE(queriesTo(kRadio + "/streams/2").isEmpty());
}

TEST_F(CliPlay, aFailureOfEveryResourceIsNamedWithTheModulesText)
{
    for (auto const& fault : {cloudsim::Fault::status(503), cloudsim::Fault::garbage()}) {
        cloud->clearFaults();
        cloud->setFault(kRadio + "/streams/*", fault);
        cloud->clearLog();
        HostRun const run = host({"--json", "play", kRadio});
        EXPECT_EQ(run.exitCode, 1);
        QJsonObject const error = errorOf(run);
        EXPECT_EQ(error.value("name").toString(), "playback") << run.out.toStdString();
        EXPECT_TRUE(error.value("message").toString().contains("Can't retrieve track from server"))
            << error.value("message").toString().toStdString();
        for (QString const stream : {"/streams/1", "/streams/2", "/streams/3"})
            EXPECT_EQ(queriesTo(kRadio + stream).size(), 1) << "each resource once: " << stream.toStdString();
    }
}

TEST(CliPlayTimeOut, aStreamThatDoesNotAnswerInTimeIsATimeOut)
{
    HostRun const run =
        runHost({"--json", "--fault", "/airable/radios/r1001/streams/*=delay:4000", "--timeout", "1", "play", kRadio});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.objects().value(0).value("error").toObject().value("name").toString(), "timeout")
        << run.out.toStdString();
}

// The simulated cloud in the host's own process is the one it can hear.
TEST(CliPlayEvents, theEventCallsOfARadioFollowTheStatesThatCausedThem)
{
    HostRun const run = runHost({"--json", "play", kRadio});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QJsonObject const played = run.objects().value(0);
    QStringList events;
    for (auto const& e : played.value("events").toArray())
        events << e.toString();
    ASSERT_EQ(events.size(), 2) << run.out.toStdString();
    EXPECT_TRUE(events[0].startsWith("/airable/radios/events/start")) << events[0].toStdString();
    EXPECT_TRUE(events[1].startsWith("/airable/radios/events/stop")) << events[1].toStdString();

    QStringList steps;
    for (auto const& s : played.value("steps").toArray())
        steps << s.toString();
    int const playing = steps.indexOf("state playing");
    int const stopped = steps.indexOf("state stopped (userStop)");
    EXPECT_EQ(steps.indexOf("event call " + events[0]), playing + 1) << steps.join('\n').toStdString();
    EXPECT_EQ(steps.indexOf("event call " + events[1]), stopped + 1) << steps.join('\n').toStdString();
}

// A row played again reports to the stream it plays now, not to the one of
// its first play: here the first play falls back to the radio's stream 1,
// and the second plays stream 3.
TEST(CliPlayEvents, aRowPlayedAgainReportsTheStreamItPlaysNow)
{
    QByteArray const play = "play " + kRadio.toUtf8() + '\n';
    HostRun const run = runHost({"--json", "--fault", kRadio + "/streams/3=status:503@1", "shell"}, play + play);
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const plays = run.objects();
    ASSERT_EQ(plays.size(), 2) << run.out.toStdString();
    char const* const streams[] = {"?stream=r1001-1", "?stream=r1001-3"};
    for (int i = 0; i < 2; ++i) {
        QJsonArray const events = plays[i].value("events").toArray();
        EXPECT_EQ(events.size(), 2) << run.out.toStdString();
        for (auto const& e : events)
            EXPECT_TRUE(e.toString().endsWith(streams[i])) << "play " << i + 1 << ": " << e.toString().toStdString();
    }
}

TEST(CliPlayEvents, aNotificationTheCloudAnswersAnEventWithIsPrinted)
{
    // The last podcast's stop is answered with a message to show.
    HostRun const run = runHost({"play", "/id/airable/feed.episode/f303-e5"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains("notification: Thanks for listening: New episodes arrive every Monday."))
        << run.err.toStdString();
}
