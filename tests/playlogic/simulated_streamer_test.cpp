#include "playlogic_fixture.h"
#include "simulatedstreamer.h"
#include "tarnconstants.h"

#include <QSet>
#include <QTimer>

using Data = TarnPlayLogicData;

namespace {

constexpr qint64 kLength = 20000;

// Answers a player as a content module does: a set-data on a prePlay path
// gets the track's roles back, on a later turn, with the active resource
// (the first one unless the player chose) holding a URI; a set-data on the
// state-change path is a report, kept. Everything else goes to the nodes,
// the play logic among them.
class StreamWorker : public CMNodesWorker
{
public:
    StreamWorker() : CMNodesWorker({{QStringLiteral("prefix"), QStringLiteral("streamed:")}}, QStringLiteral("Streamed"))
    {
    }

    void setDataRequest(CMSetDataRequest const& request) override
    {
        QString const base = request.path().base();
        if (base == QLatin1String("statechange")) {
            reports << Data(request.value().toHash());
            request.reply().setValue(QVariant());
        } else if (base.startsWith(QLatin1String("preplay/"))) {
            prePlay(request, base.mid(8));
        } else {
            CMNodesWorker::setDataRequest(request);
        }
    }

    // A track that this worker resolves, with one resource per stream.
    TarnRoles track(QString const& id, int streams = 1) const
    {
        QVariantList resources;
        for (int i = 0; i < streams; ++i)
            resources << TarnResource().setUid(QString::number(i)).setDuration(kLength).__variant();
        TarnMetaData metaData;
        metaData.setPrePlayPath(addPrefix(QStringLiteral("preplay/") + id))
            .setPlaybackStateChangePath(addPrefix(QStringLiteral("statechange")))
            .setMaximumRetryCount(streams);
        TarnMediaData media;
        media.setResources(resources).setMetaData(metaData);
        return TarnRoles().setId(id).setTitle(TrString(id)).setMediaData(media);
    }

    // Streams asked for, as "track/uid"; those refused.
    QStringList asked;
    QSet<QString> refused;
    QList<Data> reports;

private:
    void prePlay(CMSetDataRequest const& request, QString const& id)
    {
        TarnRoles roles(request.value().toHash());
        TarnMediaData media = roles.mediaData();
        TarnResource resource = media.activeResource();
        if (resource.isEmpty())
            resource = TarnResource(media.resources().value(0).toHash());
        QString const stream = id + QLatin1Char('/') + resource.uid();
        asked << stream;
        bool const refuse = refused.contains(stream);
        resource.setUri(QStringLiteral("virtual:") + stream);
        roles.setMediaData(media.setActiveResource(resource));
        QTimer::singleShot(0, this, [request, roles, refuse] {
            if (refuse)
                request.reply().setError(CMError(QStringLiteral("Error"), TrString("Can't retrieve track from server")));
            else
                request.reply().setValue(roles.__variant());
        });
    }
};

} // namespace

// The platform's streamer, made active, and a list play logic given no
// streamer: it finds the platform's, as a module's play logic does.
class StreamerUnderPlayLogic : public ::testing::Test
{
protected:
    StreamerUnderPlayLogic()
    {
        CMRootWorker::instance()->addWorker(&worker);
        streamer.makeActive();
        QObject::connect(&streamer, &SimulatedStreamer::step, &worker, [this](QString const& s) { steps << s; });
    }
    ~StreamerUnderPlayLogic() override { CMRootWorker::instance()->removeWorker(&worker); }

    void makeLogic(QList<TarnRoles> const& tracks) { logic = new ListPlayLogic(worker.nodes(), path, tracks); }

    CMReply<QVariant> send(QString const& role) const
    {
        CMSetDataRequest const request(path, role, role == TarnPlayLogicRoles::Play() ? TarnPlayLogicPlayArgs().__variant()
                                                                                      : QVariant());
        CMRoot()->request(request);
        return request.reply();
    }

    bool logicIs(QString const& id, int state) const
    {
        return waitUntil([&] { return logic->data().trackRoles().id() == id && logic->data().state() == state; });
    }

    bool followingReady(QString const& stream) const
    {
        return waitUntil([&] { return steps.contains(QStringLiteral("following track ready: virtual:") + stream); });
    }

    // Declared first: the play logic, which goes with the worker, took it.
    SimulatedStreamer streamer;
    StreamWorker worker;
    CMPath const path = worker.addPrefix(QStringLiteral("program"));
    ListPlayLogic* logic = nullptr;
    QStringList steps;
};

TEST_F(StreamerUnderPlayLogic, resolvesWhatFollowsAheadMovesOnWithoutAGapAndEndsWithTheLastTrack)
{
    makeLogic({worker.track(QStringLiteral("t0")), worker.track(QStringLiteral("t1"))});
    finished(send(TarnPlayLogicRoles::Play()));
    ASSERT_TRUE(logicIs("t0", Data::Playing));
    EXPECT_EQ(streamer.uri(), QStringLiteral("virtual:t0/0"));
    CMRowsWatch watch(path);
    QList<Data> changes;
    QObject::connect(&watch, &CMRowsWatch::changed, [&] { changes << logic->data(); });

    // 10 s before the end the play logic is asked; its answer is resolved
    // while t0 still plays.
    streamer.advance(kLength - SimulatedStreamer::kFollowingLeadMs - 1);
    for (int turn = 0; turn < 5; ++turn)
        QCoreApplication::processEvents();
    EXPECT_EQ(worker.asked, QStringList{QStringLiteral("t0/0")}) << "asked before the lead time";
    streamer.advance(1);
    ASSERT_TRUE(followingReady(QStringLiteral("t1/0")));
    EXPECT_EQ(streamer.uri(), QStringLiteral("virtual:t0/0"));

    worker.reports.clear();
    streamer.advance(SimulatedStreamer::kFollowingLeadMs + 2000);
    EXPECT_EQ(streamer.uri(), QStringLiteral("virtual:t1/0"));
    EXPECT_EQ(streamer.positionMs(), 2000) << "t1 began the moment t0 ended";
    ASSERT_TRUE(logicIs("t1", Data::Playing));
    EXPECT_EQ(changes.size(), 1) << "one start, with no stop or preparing between";
    // Each track's state reaches its state-change path: t0 stops, t1
    // starts on a stream of its own.
    ASSERT_EQ(worker.reports.size(), 2);
    EXPECT_EQ(worker.reports[0].trackRoles().id(), QStringLiteral("t0"));
    EXPECT_EQ(worker.reports[0].state(), Data::Stopped);
    EXPECT_TRUE(worker.reports[0].error().isEmpty());
    EXPECT_EQ(worker.reports[1].trackRoles().id(), QStringLiteral("t1"));
    EXPECT_EQ(worker.reports[1].state(), Data::Playing);
    EXPECT_EQ(worker.reports[1].streamId(), worker.reports[0].streamId() + 1);

    // Nothing follows the last track: the streamer ends, and the program.
    streamer.advance(kLength - SimulatedStreamer::kFollowingLeadMs - 2000);
    EXPECT_EQ(steps.count(QStringLiteral("the play logic is asked what follows")), 2);
    for (int turn = 0; turn < 5; ++turn)
        QCoreApplication::processEvents();
    streamer.advance(SimulatedStreamer::kFollowingLeadMs);
    EXPECT_EQ(streamer.state(), Data::Stopped);
    ASSERT_TRUE(waitUntil([&] { return logic->data().state() == Data::Stopped; }));
    EXPECT_TRUE(logic->data().trackRoles().isEmpty());
    EXPECT_TRUE(logic->data().error().isEmpty());
    EXPECT_EQ(worker.reports.last().trackRoles().id(), QStringLiteral("t1"));
    EXPECT_EQ(worker.reports.last().state(), Data::Stopped);
}

TEST_F(StreamerUnderPlayLogic, aBrokenStreamTriesTheTracksNextStreamAndOnlyGivingUpReachesThePlayLogic)
{
    makeLogic({worker.track(QStringLiteral("t0"), 2)});
    finished(send(TarnPlayLogicRoles::Play()));
    ASSERT_TRUE(logicIs("t0", Data::Playing));
    int const stream = logic->data().streamId();

    streamer.failStream();
    ASSERT_TRUE(waitUntil([&] { return streamer.uri() == QStringLiteral("virtual:t0/1"); }));
    for (int turn = 0; turn < 5; ++turn)
        QCoreApplication::processEvents();
    EXPECT_EQ(logic->data().state(), Data::Playing);
    EXPECT_EQ(logic->data().streamId(), stream) << "another stream of the same track is no new start";

    streamer.failStream(QStringLiteral("decoderError"));
    ASSERT_TRUE(logicIs("t0", Data::Stopped));
    EXPECT_EQ(logic->data().error(), QStringLiteral("decoderError"));
    EXPECT_EQ(worker.reports.last().error(), QStringLiteral("decoderError"));

    // Every stream refused: the preparation's failure, under its own name.
    worker.refused = {QStringLiteral("t0/0"), QStringLiteral("t0/1")};
    finished(send(TarnPlayLogicRoles::Play()));
    ASSERT_TRUE(waitUntil([&] { return logic->data().error() == TarnPlaylogicErrorName::TarnPlaylogicPrepareFailed(); }));
    EXPECT_EQ(logic->data().state(), Data::Stopped);
    EXPECT_EQ(streamer.errorText(), QStringLiteral("Can't retrieve track from server"));
}

TEST_F(StreamerUnderPlayLogic, whileAProgramPlaysThePlayerIsItsPlayLogic)
{
    makeLogic({worker.track(QStringLiteral("t0")), worker.track(QStringLiteral("t1"))});
    finished(send(TarnPlayLogicRoles::Play()));
    ASSERT_TRUE(logicIs("t0", Data::Playing));
    ASSERT_EQ(PlayLogicInterface::playerInstance(), logic);
    EXPECT_EQ(streamer.data(), logic->data());

    EXPECT_FALSE(finished(streamer.next()).hasError());
    ASSERT_TRUE(logicIs("t1", Data::Playing));
    ASSERT_TRUE(waitUntil([&] { return streamer.uri() == QStringLiteral("virtual:t1/0"); }));
    EXPECT_EQ(PlayLogicInterface::playerInstance()->data().trackRoles().id(), QStringLiteral("t1"));
    EXPECT_EQ(streamer.data().trackRoles().id(), QStringLiteral("t1"));

    finished(streamer.previous());
    ASSERT_TRUE(logicIs("t0", Data::Playing));
    ASSERT_TRUE(waitUntil([&] { return streamer.uri() == QStringLiteral("virtual:t0/0"); }));

    // The play logic pauses the streamer, which says so back.
    finished(streamer.pause());
    ASSERT_TRUE(logicIs("t0", Data::Paused));
    EXPECT_EQ(streamer.state(), Data::Paused);
    finished(PlayLogicInterface::playerInstance()->pause());
    ASSERT_TRUE(logicIs("t0", Data::Playing));
    EXPECT_EQ(streamer.state(), Data::Playing);

    // The user's stop ends the stream at once and reaches the play logic.
    worker.reports.clear();
    finished(streamer.stop(TarnPlayLogicStopReason::User));
    EXPECT_EQ(streamer.state(), Data::Stopped);
    ASSERT_EQ(worker.reports.size(), 1);
    EXPECT_EQ(worker.reports[0].error(), TarnPlaylogicErrorName::TarnPlaylogicUserStop());
    ASSERT_TRUE(waitUntil([&] { return logic->data().state() == Data::Stopped; }));
    EXPECT_EQ(logic->data().error(), TarnPlaylogicErrorName::TarnPlaylogicUserStop());
    for (int turn = 0; turn < 5; ++turn)
        QCoreApplication::processEvents();
    EXPECT_EQ(worker.reports.size(), 1) << "the play logic's stop finds nothing left to stop";
}

TEST_F(StreamerUnderPlayLogic, aProgramRowGoesToItsPlayLogicAndAPlainRowTakesThePlayerBack)
{
    makeLogic({worker.track(QStringLiteral("t0"))});
    TarnMediaData program;
    program.setMetaData(TarnMetaData().setPlayLogicPath(path));
    streamer.play(TarnRoles().setId(QStringLiteral("program")).setMediaData(program));
    ASSERT_TRUE(logicIs("t0", Data::Playing));
    ASSERT_TRUE(waitUntil([&] { return streamer.uri() == QStringLiteral("virtual:t0/0"); }));
    EXPECT_EQ(PlayLogicInterface::playerInstance(), logic);

    streamer.play(worker.track(QStringLiteral("r")));
    ASSERT_TRUE(waitUntil([&] { return logic->data().state() == Data::Stopped; }));
    EXPECT_TRUE(logic->data().error().isEmpty()) << "its media ended; nothing failed";
    EXPECT_EQ(PlayLogicInterface::playerInstance(), &streamer);
    ASSERT_TRUE(waitUntil([&] { return streamer.uri() == QStringLiteral("virtual:r/0"); }));
    EXPECT_EQ(streamer.data().trackRoles().id(), QStringLiteral("r"));

    // A play logic that refuses leaves the row failed, with its text.
    TarnMediaData nowhere;
    nowhere.setMetaData(TarnMetaData().setPlayLogicPath(worker.addPrefix(QStringLiteral("none"))));
    streamer.play(TarnRoles().setId(QStringLiteral("gone")).setMediaData(nowhere));
    ASSERT_TRUE(waitUntil([&] { return !streamer.errorName().isEmpty(); }));
    EXPECT_EQ(streamer.errorName(), TarnPlaylogicErrorName::TarnPlaylogicPrepareFailed());
}

TEST_F(StreamerUnderPlayLogic, aPlayLogicPlaysThroughThePlatformsStreamerOfTheMomentAndHearsWhenItGoes)
{
    makeLogic({worker.track(QStringLiteral("t0"))});
    {
        SimulatedStreamer other;
        other.makeActive();
        finished(send(TarnPlayLogicRoles::Play()));
        ASSERT_TRUE(logicIs("t0", Data::Playing));
        ASSERT_TRUE(waitUntil([&] { return other.uri() == QStringLiteral("virtual:t0/0"); }));
        EXPECT_EQ(streamer.state(), Data::Stopped);
    }
    ASSERT_TRUE(waitUntil([&] { return logic->data().state() == Data::Stopped; }));
    EXPECT_EQ(logic->streamer(), nullptr);
    EXPECT_EQ(finished(logic->sendPlayCommand(worker.track(QStringLiteral("t0")), {})).error().name(),
              StreamerPlayLogic::noStreamerError().name());
}
