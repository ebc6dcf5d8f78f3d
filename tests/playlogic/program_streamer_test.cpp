#include "../play/play_fixture.h"
#include "streamerplaylogic.h"
#include "tarnplaylogicrecords.h"

namespace {

// A program track of a minute, its one stream a redirect with event URLs.
QByteArray track(QString const& id)
{
    return QStringLiteral(R"({"id": ["deezer", "track", "%1"], "title": "Track %1", "url": "{base}/deezer/tracks/%1",)"
                          R"("duration": 60, "streams": [{"id": ["deezer", "radio.stream", "%1"],)"
                          R"("url": "{base}/deezer/streams/%1", "codec": {"name": "mp3", "bitrate": 128}}]})")
        .arg(id)
        .toUtf8();
}

QByteArray stream(QString const& id)
{
    return QStringLiteral(R"("/deezer/streams/%1": {"id": ["deezer", "redirect", "%1"], "url": "{base}/media/%1.mp3",)"
                          R"("events": {"start": "{base}/ev/%1/start", "stop": "{base}/ev/%1/stop"}},)"
                          R"("/ev/%1/start": {"id": ["deezer", "listing", "true"]},)"
                          R"("/ev/%1/stop": {"id": ["deezer", "listing", "true"]},)")
        .arg(id)
        .toUtf8();
}

} // namespace

// The module's program play logic, given no streamer, finds the platform's
// stand-in streamer, whose tracks take the module's prePlay road and whose
// states reach the cloud as the events of each stream.
class ProgramOnStreamer : public Play
{
protected:
    QByteArray documents() const override
    {
        return "{" + stream(QStringLiteral("a")) + stream(QStringLiteral("b")) +
               R"("/skips": {"url": "{base}/skip", "status": "{base}/skips", "available": 1},)"
               R"("/deezer/flow": {"id": ["deezer", "program", "flow"], "title": "Flow", "url": "{base}/deezer/flow",)"
               R"("skip": {"available": 1, "status": "{base}/skips", "url": "{base}/skip"},)"
               R"("content": {"entries": [)" +
               track(QStringLiteral("a")) + "," + track(QStringLiteral("b")) + "]}}}";
    }

    TarnRoles program() const
    {
        TarnRoles row;
        row.setPath(at(QStringLiteral("/deezer/flow")));
        row.setTitle(TrString(QStringLiteral("Flow")));
        row.setMediaData(TarnMediaData().setMetaData(TarnMetaData().setPlayLogicPath(TarnAirableProgramPlayLogicPath())));
        return row;
    }

    QStringList eventCalls() const { return paths().filter(QStringLiteral("/ev/")); }
};

TEST_F(ProgramOnStreamer, playsTheProgramsTracksOneAfterTheOtherAndTheCloudHearsEachStream)
{
    SimulatedStreamer streamer;
    streamer.makeActive();
    AirableProgramPlayLogic* const logic = probe->programPlayLogic();
    ASSERT_NE(logic, nullptr);

    streamer.play(program());
    ASSERT_TRUE(waitFor([&] { return streamer.state() == TarnPlayLogicData::Playing; }));
    EXPECT_EQ(streamer.uri(), cloud->baseUrl() + QStringLiteral("/media/a.mp3"));
    ASSERT_TRUE(waitFor([&] { return PlayLogicInterface::playerInstance()->data().state() == TarnPlayLogicData::Playing; }));
    // The player the module asks is the program's play logic, which shows
    // the track it made; the streamer answers the same.
    EXPECT_NE(PlayLogicInterface::playerInstance(), &streamer);
    EXPECT_EQ(PlayLogicInterface::playerInstance()->data().trackRoles().title().toString(), QStringLiteral("Track a"));
    EXPECT_EQ(streamer.data().trackRoles().title().toString(), QStringLiteral("Track a"));
    EXPECT_TRUE(waitFor([&] { return eventCalls() == QStringList{QStringLiteral("/ev/a/start")}; }));

    streamer.advance(60000 - SimulatedStreamer::kFollowingLeadMs);
    ASSERT_TRUE(waitFor([&] { return paths().contains(QStringLiteral("/deezer/streams/b")); }))
        << paths().join(' ').toStdString();
    ASSERT_TRUE(waitFor([&] { return probe->eventRecords().size() == 2; }));
    streamer.advance(SimulatedStreamer::kFollowingLeadMs);
    EXPECT_EQ(streamer.uri(), cloud->baseUrl() + QStringLiteral("/media/b.mp3"));
    EXPECT_TRUE(waitFor([&] {
        return PlayLogicInterface::playerInstance()->data().trackRoles().title().toString() == QStringLiteral("Track b");
    }));
    EXPECT_TRUE(waitFor([&] { return eventCalls().size() == 3; }));
    EXPECT_EQ(eventCalls(), (QStringList{QStringLiteral("/ev/a/start"), QStringLiteral("/ev/a/stop"),
                                         QStringLiteral("/ev/b/start")}));

    CMReply<QVariant> const stopped = streamer.stop(TarnPlayLogicStopReason::User);
    EXPECT_TRUE(waitFor([&] { return stopped.isFinished(); }));
    EXPECT_TRUE(waitFor([&] { return eventCalls().size() == 4; }));
    EXPECT_EQ(eventCalls().value(3), QStringLiteral("/ev/b/stop"));
    EXPECT_TRUE(waitFor([&] {
        return PlayLogicInterface::playerInstance()->data().error() == TarnPlaylogicErrorName::TarnPlaylogicUserStop();
    }));
}
