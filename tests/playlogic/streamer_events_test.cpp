#include "playlogic_fixture.h"

#include <QThread>

using Data = TarnPlayLogicData;

TEST_F(PlayLogicTest, preparedNextMediaFollowsWithoutAGap)
{
    finished(play());
    ASSERT_TRUE(publishedIs("t0", Data::Playing));
    int const firstStream = published().streamId();
    CMRowsWatch watch(path);
    QList<Data> changes;
    QObject::connect(&watch, &CMRowsWatch::changed, [&] { changes << published(); });

    // With 5 s left the streamer asks for what follows and is given t1.
    streamer.advance(16000);
    ASSERT_TRUE(waitUntil([&] { return streamer.nextId() == QStringLiteral("t1"); }));
    EXPECT_EQ(streamer.currentId(), QStringLiteral("t0"));

    streamer.advance(5000);
    ASSERT_TRUE(publishedIs("t1", Data::Playing));
    EXPECT_EQ(streamer.position(), 1000) << "t1 began the moment t0 ended";
    ASSERT_EQ(changes.size(), 1) << "no stop and no preparing between the two";
    EXPECT_EQ(changes.first().streamId(), firstStream + 1);

    // Nothing given in time: at its end the streamer stops, and so does the logic.
    streamer.advance(20000);
    ASSERT_TRUE(waitUntil([&] { return published().state() == Data::Stopped; }));
    EXPECT_TRUE(published().trackRoles().isEmpty());
    EXPECT_TRUE(published().error().isEmpty());
}

TEST_F(PlayLogicTest, streamerFailureEndsPlaybackWithItsErrorName)
{
    finished(play());
    ASSERT_TRUE(publishedIs("t0", Data::Playing));
    streamer.fail(QStringLiteral("streamFailed"));
    ASSERT_TRUE(publishedIs("t0", Data::Stopped));
    EXPECT_EQ(published().error(), QStringLiteral("streamFailed"));

    finished(play());
    ASSERT_TRUE(publishedIs("t0", Data::Playing));
    EXPECT_TRUE(published().error().isEmpty());

    // A report still on its way when the user stops is about what was.
    streamer.fail(QStringLiteral("streamFailed"));
    finished(send(TarnPlayLogicRoles::Stop()));
    for (int turn = 0; turn < 5; ++turn)
        QCoreApplication::processEvents();
    EXPECT_EQ(published().error(), TarnPlaylogicErrorName::TarnPlaylogicUserStop());
}

// The play logic on a worker's thread, the streamer and the client on the
// application's: commands, reports and the player interface cross over.
TEST(PlayLogicThreads, workerThreadTakesCommandsAndReportsFromOthers)
{
    VirtualStreamer streamer;
    CMNodesWorker worker({{QStringLiteral("prefix"), QStringLiteral("threadplay:")}}, QStringLiteral("ThreadPlay"));
    CMPath const path = worker.addPrefix(QStringLiteral("program"));
    QThread thread;
    worker.moveToThread(&thread);
    thread.start();
    ListPlayLogic* logic = nullptr;
    QMetaObject::invokeMethod(&worker, [&] {
        logic = new ListPlayLogic(worker.nodes(), path, {track("t0", 20000), track("t1", 20000), track("t2", 20000)});
        logic->setStreamer(&streamer);
    }, Qt::BlockingQueuedConnection);
    CMRootWorker::instance()->addWorker(&worker);

    CMSetDataRequest const play(path, TarnPlayLogicRoles::Play(), TarnPlayLogicPlayArgs().__variant());
    CMRoot()->request(play);
    finished(play.reply());
    ASSERT_TRUE(waitUntil([&] { return logic->data().state() == Data::Playing; }));

    ASSERT_EQ(PlayLogicInterface::playerInstance(), logic);
    finished(PlayLogicInterface::playerInstance()->next());
    ASSERT_TRUE(waitUntil([&] { return logic->data().trackRoles().id() == QStringLiteral("t1"); }));
    streamer.advance(16000);
    EXPECT_TRUE(waitUntil([&] { return streamer.nextId() == QStringLiteral("t2"); }));

    CMRootWorker::instance()->removeWorker(&worker);
    QMetaObject::invokeMethod(&worker, [&] { delete logic; }, Qt::BlockingQueuedConnection);
    EXPECT_EQ(PlayLogicInterface::playerInstance(), nullptr);
    thread.quit();
    thread.wait();
}
