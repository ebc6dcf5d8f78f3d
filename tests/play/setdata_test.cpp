#include "play_fixture.h"

#include "cmroot.h"
#include "tarnactionreply.h"

class SetData : public Play
{
protected:
    CMPath logoutPath(QString const& stype) const
    {
        return worker->addPrefix(QStringLiteral("logout:%1:%2/%1/logout").arg(stype, cloud->baseUrl()));
    }

    static TarnRoles trackOf(QString const& serviceId, CMPath const& path)
    {
        TarnRoles track;
        track.setPath(path);
        track.setMediaData(TarnMediaData().setMetaData(TarnMetaData().setServiceID(serviceId)));
        return track;
    }

    QString stoppedState() const
    {
        return TarnValue::fromVariant(CMRoot()->getValue(TarnPlayerStoppedPlayingState())).string_();
    }
};

TEST_F(SetData, logoutClosesTheServiceGoesHomeAndStopsItsTrack)
{
    SimulatedStreamer streamer;
    streamer.makeActive();
    QList<TarnRoles> const tracks = rowRoles(at(QStringLiteral("/amazon/albums/am-al1")), 0, 0);
    ASSERT_EQ(tracks.size(), 1);
    streamer.play(tracks[0]);
    ASSERT_TRUE(waitFor([&] { return streamer.state() == TarnPlayLogicData::Playing; }));

    CMRowsWatch watch(at(QStringLiteral("/amazon")));
    QStringList changes;
    QObject::connect(&watch, &CMRowsWatch::changed, [&](QString const& type, int, int) { changes << type; });

    auto const reply = set(logoutPath(QStringLiteral("amazon")), QVariant(), QString());
    ASSERT_FALSE(reply.hasError());
    EXPECT_EQ(TarnActionReply(reply.value().toHash()).result().path(), TarnService_Home_UIPath());
    EXPECT_TRUE(waitFor([&] { return !cloud->requestsTo(QStringLiteral("/amazon/logout")).isEmpty(); }));
    EXPECT_TRUE(waitFor([&] { return streamer.state() == TarnPlayLogicData::Stopped && !changes.isEmpty(); }));
    EXPECT_EQ(changes, QStringList{CMSubscribe::RowsChangeClose()});
    EXPECT_EQ(stoppedState(), QStringLiteral("{}"));
    EXPECT_TRUE(streamer.data().trackRoles().isEmpty());
}

TEST_F(SetData, logoutStopsOnlyATrackOfThatServiceThatCameThroughThisWorker)
{
    struct Case
    {
        char const* name;
        QString logout;
        TarnRoles track;
        int stops;
    };
    Case const cases[] = {
        {"another service", QStringLiteral("qobuz"), trackOf(TarnService_Tidal_Id(), at(QStringLiteral("/t"))), 0},
        {"not from this worker", QStringLiteral("qobuz"),
         trackOf(TarnService_Qobuz_Id(), CMPath::fromPrefixWithBase(QStringLiteral("usb:/music/t.flac"))), 0},
        {"the service's own", QStringLiteral("qobuz"), trackOf(TarnService_Qobuz_Id(), at(QStringLiteral("/t"))), 1},
        {"Airable's logout spares the radios", QStringLiteral("airable"),
         trackOf(TarnService_AirableRadios_Id(), at(QStringLiteral("/r"))), 0},
    };
    for (auto const& c : cases) {
        CountingPlayer player;
        player.track = c.track;
        auto const reply = set(logoutPath(c.logout), QVariant(), QString());
        EXPECT_EQ(TarnActionReply(reply.value().toHash()).result().path(), TarnService_Home_UIPath()) << c.name;
        EXPECT_EQ(player.stops, c.stops) << c.name;
    }

    auto const unmatched = set(worker->addPrefix(QStringLiteral("logout:nothing")), QVariant(), QString());
    EXPECT_EQ(TarnActionReply(unmatched.value().toHash()).result().path(), TarnService_Home_UIPath());
}

TEST_F(SetData, everyReactionWordReachesThePlayer)
{
    CountingPlayer player;
    LogCapture log;
    struct Case
    {
        QString path;
        char const* line;
    };
    Case const cases[] = {
        {QStringLiteral("/errors/skip"), "Reaction to perform: SKIP"},
        {QStringLiteral("/errors/stop"), "Reaction to perform: STOP"},
        {QStringLiteral("/errors/pause"), "Reaction to perform: PAUSE"},
        {QStringLiteral("/errors/logout"), "Reaction to perform: LOGOUT"},
    };
    for (auto const& c : cases) {
        auto reply = TarnClient::rows(at(c.path), 0, 9, {TarnRoles::Title()});
        ASSERT_TRUE(TarnClient::wait(reply, kPatienceMs));
        // The cloud's text still reaches the client.
        EXPECT_EQ(reply.error().name(), QStringLiteral("Error")) << c.line;
        EXPECT_EQ(log.count(QString::fromLatin1(c.line)), 1);
    }
    EXPECT_EQ(player.nexts, 1);
    EXPECT_EQ(player.stops, 1);
    EXPECT_EQ(player.pauses, 1);
    // A logout order means Amazon Music, whoever sends it.
    EXPECT_TRUE(waitFor([&] { return !cloud->requestsTo(QStringLiteral("/amazon/logout")).isEmpty(); }));
}

TEST_F(SetData, actionsAndLinksAnswerWithTheListingToOpen)
{
    auto const link = set(at(QStringLiteral("/airable/radios/r1001")), QVariant(), TarnRoles::Activate());
    ASSERT_FALSE(link.hasError()) << link.error().messageText().toStdString();
    TarnActionReply const goTo(link.value().toHash());
    EXPECT_EQ(goTo.xclass(), QStringLiteral("TarnActionReply"));
    EXPECT_EQ(goTo.result().path(), at(QStringLiteral("/airable/radios/r1001")));
    EXPECT_TRUE(goTo.events().isEmpty());

    LogCapture log;
    auto const action = set(worker->addPrefix(QStringLiteral("action:") + cloud->baseUrl() + QStringLiteral("/errors/message")),
                            QVariant(), TarnRoles::Activate());
    EXPECT_EQ(action.error().messageText(), QStringLiteral("This content is not available in your country."));
    EXPECT_TRUE(log.contains(QStringLiteral("Intermediate step on setDataRequest failed: ")));
}

TEST_F(SetData, aNotificationStaysNotedUntilTheDisplayRefusesIt)
{
    QList<TarnNotificationDisplayItem> shown;
    bool refuse = false;
    CMRootWorker::instance()->setAction(TarnNotificationDisplayOpenPath(),
                        [&](TarnHash const& args, CMReply<QVariant> const& reply) {
                            shown << TarnValue(args).notificationDisplayItem();
                            if (refuse)
                                reply.setError(CMError(QStringLiteral("busy"), TrString(QStringLiteral("Display busy"))));
                            else
                                reply.setValue(QVariant());
                        });
    CMPath const path = worker->addPrefix(QStringLiteral("message7"));
    LogCapture log;
    probe->onWorker([path](CMAirableWorker* w) { w->showNotification(path); });
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(shown[0].path(), path);
    EXPECT_EQ(shown[0].priority(), 4);
    EXPECT_TRUE(probe->notified(path));

    refuse = true;
    probe->onWorker([path](CMAirableWorker* w) { w->showNotification(path); });
    EXPECT_FALSE(probe->notified(path));
    EXPECT_TRUE(log.contains(QStringLiteral("Failed to show notification: Display busy")));
    CMRootWorker::instance()->setAction(TarnNotificationDisplayOpenPath(), nullptr);
}
