#include "play_fixture.h"

#include "cmroot.h"

// An order to log out, in any answer of the cloud, ends the Amazon Music
// login. The track that plays stops with it only when it is an Amazon Music
// track that came through this worker, and then the player's stopped state
// tells that playback has stopped.
class LogoutReaction : public Play
{
protected:
    QString stoppedState() const
    {
        return TarnValue::fromVariant(CMRoot()->getValue(TarnPlayerStoppedPlayingState())).string_();
    }
};

TEST_F(LogoutReaction, stopsAnAmazonMusicTrackOfThisWorkerAndNoOther)
{
    QList<TarnRoles> const rows = rowRoles(at(QStringLiteral("/amazon/albums/am-al1")), 0, 0);
    ASSERT_EQ(rows.size(), 1);
    TarnRoles const amazonTrack = rows.first();
    ASSERT_EQ(amazonTrack.mediaData().metaData().serviceID(), TarnService_AmazonMusic_Id());
    TarnRoles elsewhere = amazonTrack;
    elsewhere.setPath(CMPath::fromPrefixWithBase(QStringLiteral("usb:/music/t.flac")));
    TarnRoles otherService;
    otherService.setPath(at(QStringLiteral("/qobuz/tracks/t")));
    otherService.setMediaData(TarnMediaData().setMetaData(TarnMetaData().setServiceID(TarnService_Qobuz_Id())));

    struct Case
    {
        char const* name;
        TarnRoles track;
        bool stops;
    };
    Case const cases[] = {
        {"an Amazon Music track of this worker", amazonTrack, true},
        {"an Amazon Music track that came another way", elsewhere, false},
        {"a track of another service", otherService, false},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.name);
        CMRootWorker::instance()->putValue(TarnPlayerStoppedPlayingState(),
                                           TarnValue().setString_(QStringLiteral("playing")));
        cloud->clearLog();
        CountingPlayer player;
        player.track = c.track;
        LogCapture log;

        auto reply = TarnClient::rows(at(QStringLiteral("/errors/logout")), 0, 9, {TarnRoles::Title()});
        ASSERT_TRUE(TarnClient::wait(reply, kPatienceMs));
        EXPECT_EQ(log.count(QStringLiteral("Reaction to perform: LOGOUT")), 1);
        EXPECT_TRUE(waitFor([&] { return !cloud->requestsTo(QStringLiteral("/amazon/logout")).isEmpty(); }));
        EXPECT_EQ(player.stops > 0, c.stops);
        EXPECT_EQ(stoppedState(), c.stops ? QStringLiteral("{}") : QStringLiteral("playing"));
        EXPECT_EQ(log.contains(QStringLiteral("Stopping streamer because of logout")), c.stops);
    }
}
