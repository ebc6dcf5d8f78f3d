#include "cmreply.h"
#include "tarnrowsroles.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <atomic>
#include <gtest/gtest.h>

namespace {

// A thread with an event loop and an object living on it.
struct LoopThread
{
    QThread thread;
    QObject* object = new QObject;
    LoopThread()
    {
        object->moveToThread(&thread);
        thread.start();
    }
    ~LoopThread()
    {
        if (object)
            QMetaObject::invokeMethod(object, [o = object] { delete o; }, Qt::BlockingQueuedConnection);
        thread.quit();
        thread.wait();
    }
    void destroyObject()
    {
        QMetaObject::invokeMethod(object, [o = object] { delete o; }, Qt::BlockingQueuedConnection);
        object = nullptr;
    }
    // Runs f on the thread and waits for it.
    template <typename F>
    void run(F f)
    {
        QObject runner;
        runner.moveToThread(&thread);
        QMetaObject::invokeMethod(&runner, f, Qt::BlockingQueuedConnection);
    }
};

bool spinUntil(std::function<bool()> const& done, int ms = 2000)
{
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return done();
}

} // namespace

TEST(Reply, hookWithContextRunsOnTheContextsThread)
{
    LoopThread other;
    CMReply<int> reply;
    std::atomic<QThread*> ranOn{nullptr};
    reply.onSuccess(other.object, [&](int const&) { ranOn = QThread::currentThread(); });
    reply.setValue(7);
    ASSERT_TRUE(spinUntil([&] { return ranOn.load() != nullptr; }));
    EXPECT_EQ(ranOn.load(), &other.thread);
}

TEST(Reply, hookWithDestroyedContextNeverRuns)
{
    CMReply<int> reply;
    std::atomic<int> runs{0};
    {
        LoopThread other;
        reply.onFinished(other.object, [&](CMReply<int> const&) { ++runs; });
        other.destroyObject();
        reply.setValue(1);
    }
    auto* local = new QObject;
    CMReply<int> second;
    second.onSuccess(local, [&](int const&) { ++runs; }, Qt::QueuedConnection);
    second.setValue(2);
    delete local; // before the queued call is delivered
    QCoreApplication::processEvents();
    EXPECT_EQ(runs.load(), 0);
}

TEST(Reply, autoHookWithoutContextRunsOnTheFinishingThread)
{
    CMReply<TarnRowsRoles> reply;
    std::atomic<QThread*> ranOn{nullptr};
    reply.onSuccess([&](TarnRowsRoles const&) { ranOn = QThread::currentThread(); });
    LoopThread other;
    other.run([&] { reply.setValue(TarnRowsRoles()); });
    EXPECT_EQ(ranOn.load(), &other.thread);
}

TEST(Reply, secondFinishKeepsTheFirstResultAndRunsNoHookTwice)
{
    CMReply<int> reply;
    int finished = 0, errors = 0;
    reply.onFinished([&](CMReply<int> const&) { ++finished; });
    reply.onError([&](CMError const&) { ++errors; });
    reply.setValue(1);
    reply.setValue(2);
    reply.setError(CMError(QStringLiteral("Error"), TrString("late")));
    EXPECT_EQ(finished, 1);
    EXPECT_EQ(errors, 0);
    EXPECT_EQ(reply.value(), 1);
    EXPECT_FALSE(reply.hasError());
}

TEST(Reply, hooksAddedAfterTheFinishStillRunByOutcome)
{
    CMReply<QString> reply;
    reply.setError(CMError(QStringLiteral("Error"), TrString("gone")));
    QString seen;
    bool success = false;
    reply.onSuccess([&](QString const&) { success = true; });
    reply.onError([&](CMError const& e) { seen = e.messageText(); });
    EXPECT_EQ(seen, QStringLiteral("gone"));
    EXPECT_FALSE(success);
    EXPECT_EQ(reply.error().value(CMError::Title()).toString(), CMError::DefaultTitle());
}

TEST(Reply, cancelledReplyRunsNoHookAndDropsResults)
{
    CMReply<int> reply;
    int runs = 0;
    reply.onFinished([&](CMReply<int> const&) { ++runs; });
    reply.cancel();
    reply.setValue(3);
    reply.onFinished([&](CMReply<int> const&) { ++runs; });
    EXPECT_EQ(runs, 0);
    EXPECT_TRUE(reply.isFinished());
    EXPECT_TRUE(reply.waitForFinished(0));
}

TEST(Reply, watcherObjectSignalsOnItsThread)
{
    CMReplyWatcherObject watcher;
    CMReply<int> reply;
    int emitted = 0;
    QObject::connect(&watcher, &CMReplyWatcherObject::finishedSignal, [&](CMVoidReply const& r) {
        ++emitted;
        EXPECT_EQ(CMReply<int>(r).value(), 9);
    });
    reply.addWatcher(&watcher);
    reply.setValue(9);
    EXPECT_EQ(emitted, 1);
}

TEST(Reply, typedViewOfAnotherTypeIsNull)
{
    CMReply<int> reply;
    CMVoidReply const base = reply;
    EXPECT_FALSE(!CMReply<int>(base));
    EXPECT_TRUE(!CMReply<QString>(base));
    EXPECT_TRUE(!CMVoidReply());
}
