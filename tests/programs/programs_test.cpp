#include "program_fixture.h"
#include "tarnactionreply.h"

namespace {

// A track of a program: its own URL, one stream, the three rating actions.
QByteArray track(QString const& service, QString const& id, bool liked = false)
{
    return QStringLiteral(
               R"({"id": ["%1", "track", "%2"], "title": "Track %2", "url": "{base}/%1/tracks/%2", "duration": 60,)"
               R"("streams": [{"id": ["%1", "radio.stream", "%2"], "url": "{base}/%1/streams/%2",)"
               R"("codec": {"name": "mp3", "bitrate": 128}}],)"
               R"("actions": [{"id": ["%1", "action", "rate.positive"], "url": "{base}/rate/%2/up", "active": %3},)"
               R"({"id": ["%1", "action", "rate.neutral"], "url": "{base}/rate/%2/none"},)"
               R"({"id": ["%1", "action", "rate.negative"], "url": "{base}/rate/%2/down"}]})")
        .arg(service, id, liked ? QStringLiteral("true") : QStringLiteral("false"))
        .toUtf8();
}

} // namespace

// Programs of the services as the cloud sends them.
class Programs : public ProgramPlay
{
protected:
    QByteArray documents() const override
    {
        return "{"
               R"("/deezer/flow": {"id": ["deezer", "program", "flow"], "title": "Flow", "url": "{base}/deezer/flow",)"
               R"("skip": {"available": 1, "status": "{base}/skips", "url": "{base}/skip"},)"
               R"("content": {"entries": [)" + track("deezer", "a") + "," + track("deezer", "b", true) + "]}},"
               R"("/skip": {"url": "{base}/skip", "status": "{base}/skips", "available": 0},)"
               R"("/skips": {"url": "{base}/skip", "status": "{base}/skips", "available": 0},)"
               R"("/rate/a/up": {"id": ["deezer", "error", "refused"], "message": "Rating is not possible now"},)"
               R"("/rate/b/none": {"id": ["deezer", "action", "rated"], "message": "Taken back"},)"
               R"("/amazon/station": {"id": ["amazon", "program", "s"], "title": "Station", "url": "{base}/amazon/station",)"
               R"("content": {"pagination": {"next": "{base}/amazon/station/2"}, "entries": [)" + track("amazon", "p1") + "]}},"
               R"("/amazon/station/2": {"id": ["amazon", "program", "s"], "title": "Station",)"
               R"("content": {"pagination": {"next": "{base}/amazon/station/3", "prev": "{base}/amazon/station"},)"
               R"("entries": [)" + track("amazon", "p2") + "]}},"
               R"("/amazon/station/3": {"id": ["amazon", "program", "s"], "title": "Station",)"
               R"("content": {"pagination": {"prev": "{base}/amazon/station/2"}, "entries": [)" + track("amazon", "p3") + "]}},"
               R"("/deezer/broken": {"id": ["deezer", "error", "gone"], "message": "Program gone"},)"
               R"("/amazon/broken": {"id": ["amazon", "error", "gone"], "message": "Program gone"})"
               "}";
    }

    // Lets the worker's thread work the streamer's reports.
    bool settle(std::string const& title) { return waitFor([&] { return playing() == title; }); }
};

TEST_F(Programs, deezerPlaysItsFirstTrackPreparesTheNextAndMovesOnWhenATrackEnds)
{
    auto const play = start(QStringLiteral("/deezer/flow"));
    ASSERT_FALSE(play.hasError()) << play.error().messageText().toStdString();
    ASSERT_TRUE(settle("Track a"));
    TarnPlayLogicControls const controls(published().controls());
    EXPECT_TRUE(controls.next_());
    EXPECT_FALSE(controls.previous()) << "a Deezer program has no way back";
    EXPECT_FALSE(controls.seekTime()) << "a skip limit gives no seeking";
    EXPECT_TRUE(controls.like());

    streamer.advance(56 * 1000);
    ASSERT_TRUE(waitFor([&] { return streamer.nextId() != QString(); })) << "the next is prepared before the end";
    EXPECT_EQ(paths().count(QStringLiteral("/skips")), 1) << "preparing asks the status, it uses no skip";
    streamer.advance(5 * 1000);
    EXPECT_TRUE(settle("Track b"));
}

TEST_F(Programs, skipsUntilTheLimitThenTheErrorWithTheOffer)
{
    LogCapture log;
    start(QStringLiteral("/deezer/flow"));
    ASSERT_TRUE(settle("Track a"));
    auto const skip = command(TarnPlayLogicRoles::Next());
    ASSERT_FALSE(skip.hasError()) << skip.error().messageText().toStdString();
    EXPECT_TRUE(settle("Track b"));

    // The answer to the skip said none are left.
    auto const refused = command(TarnPlayLogicRoles::Next());
    EXPECT_EQ(refused.error().name(), TarnErrorSkipLimitReached());
    EXPECT_TRUE(log.contains(QStringLiteral("Skip fetched, available skips: 0")));
    TarnActionReply const offer(refused.error().value(CMError::ActionReply()).toHash());
    TarnRoles const roles = offer.result();
    EXPECT_EQ(roles.title().toString(), QStringLiteral("Subscribe"));
    EXPECT_EQ(roles.value(TarnRoles::Description()).value<TrString>().toString(),
              QStringLiteral("Subscribe to Deezer Premium to get unlimited skips"));
    EXPECT_EQ(TarnResource(roles.mediaData().resources().value(0).toHash()).uri(),
              QStringLiteral("https://signup.example/deezer"));
    EXPECT_EQ(paths().count(QStringLiteral("/skip")), 1);
}

TEST_F(Programs, amazonGoesPageAfterPageAndBackAndPreviousRestartsLateInATrack)
{
    start(QStringLiteral("/amazon/station"));
    ASSERT_TRUE(settle("Track p1"));
    EXPECT_FALSE(TarnPlayLogicControls(published().controls()).previous());
    ASSERT_FALSE(command(TarnPlayLogicRoles::Next()).hasError());
    ASSERT_TRUE(settle("Track p2"));
    TarnPlayLogicControls const controls(published().controls());
    EXPECT_TRUE(controls.previous());
    EXPECT_TRUE(controls.seekTime()) << "no skip object, so seeking is allowed";

    // Early in the track previous goes back a page ...
    ASSERT_FALSE(command(TarnPlayLogicRoles::Previous()).hasError());
    ASSERT_TRUE(settle("Track p1"));
    // ... late in it, it starts the track again.
    ASSERT_FALSE(command(TarnPlayLogicRoles::Next()).hasError());
    ASSERT_TRUE(settle("Track p2"));
    streamer.advance(TarnPreviousTrackTimeLimit() + 1000);
    ASSERT_TRUE(waitFor([&] { return playLogic && published().positionMs() >= 0; }));
    cloud->clearLog();
    ASSERT_FALSE(command(TarnPlayLogicRoles::Previous()).hasError());
    EXPECT_TRUE(waitFor([&] { return streamer.position() == 0; }));
    EXPECT_EQ(playing(), "Track p2");
    EXPECT_TRUE(paths().isEmpty());
}

TEST_F(Programs, aRatingTheCloudRefusesReturnsToItsFormerValue)
{
    start(QStringLiteral("/deezer/flow"));
    ASSERT_TRUE(settle("Track a"));
    auto const like = command(TarnPlayLogicRoles::Like());
    EXPECT_EQ(like.error().messageText(), QStringLiteral("Rating is not possible now"));
    EXPECT_EQ(TarnRating(published().trackRoles().mediaData().metaData().rating()).threeStateValue(),
              TarnRatingThreeStateValues::Neutral);

    command(TarnPlayLogicRoles::Next());
    ASSERT_TRUE(settle("Track b"));
    auto const unlike = command(TarnPlayLogicRoles::Like());
    ASSERT_FALSE(unlike.hasError()) << unlike.error().messageText().toStdString();
    EXPECT_EQ(TarnActionReply(unlike.value().toHash()).result().value(TarnRoles::Description()).value<TrString>().toString(),
              QStringLiteral("Taken back"));
    EXPECT_EQ(TarnRating(published().trackRoles().mediaData().metaData().rating()).threeStateValue(),
              TarnRatingThreeStateValues::Neutral) << "a liked track's like takes it back";
}

TEST_F(Programs, stopClearsTheQueueAndALateAnswerDoesNothing)
{
    // The first batch is slow: the stop comes while it is on its way.
    cloud->setFault(QStringLiteral("/deezer/flow"), cloudsim::Fault::delay(300, 1));
    auto const play = TarnClient::setData(logic(), TarnPlayLogicRoles::Play(),
        TarnPlayLogicPlayArgs().setMediaRoles(TarnRoles().setPath(at(QStringLiteral("/deezer/flow")))).__variant());
    ASSERT_FALSE(command(TarnPlayLogicRoles::Stop()).hasError());
    ASSERT_TRUE(TarnClient::wait(play, kPatienceMs));
    EXPECT_EQ(play.error().name(), ControlQueue::CancelledErrorName());
    CMReply<QVariant> never;
    TarnClient::wait(never, 500);
    EXPECT_TRUE(streamer.currentId().isEmpty()) << "nothing plays after the stop";

    // Deezer takes only a program for an answer; Amazon Music passes the
    // cloud's own error on.
    EXPECT_EQ(start(QStringLiteral("/deezer/broken")).error().messageText().toStdString(), "Invalid response from server");
    EXPECT_EQ(start(QStringLiteral("/amazon/broken")).error().messageText().toStdString(), "Program gone");
    EXPECT_EQ(start(QStringLiteral("/qobuz/none")).error().messageText().toStdString(), "Unsupported service");

    // A person who presses on after the program failed gets told so.
    for (QString const& role : {TarnPlayLogicRoles::Next(), TarnPlayLogicRoles::Previous(), TarnPlayLogicRoles::Like()})
        EXPECT_FALSE(command(role).error().messageText().isEmpty()) << role.toStdString();
    EXPECT_EQ(command(TarnPlayLogicRoles::Previous()).error().messageText().toStdString(), "No program is playing");
}
