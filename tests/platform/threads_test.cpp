// Where threads meet, with standard threads so that the thread sanitizer
// sees every hand-over; this binary is also run under it.
#include "Portable_ReferenceCountedObject.h"
#include "cmreply.h"
#include "cmsubscribe.h"
#include "patience.h"

#include <QSignalSpy>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {
template <typename F>
void onThreads(int count, F f)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back(f, i);
    for (auto& t : threads)
        t.join();
}
} // namespace

TEST(Threads, racingFinishersRunEachHookOnceWithTheWinningValue)
{
    for (int round = 0; round < 50; ++round) {
        CMReply<int> reply;
        std::atomic<int> runs{0};
        std::atomic<int> seen{-1};
        reply.onSuccess([&](int const& v) {
            ++runs;
            seen = v;
        });
        onThreads(4, [reply, &runs, &seen](int i) {
            if (i % 2)
                reply.setValue(i);
            else
                reply.onFinished([&](CMReply<int> const& r) {
                    ++runs;
                    seen = r.value();
                });
        });
        reply.setValue(100);
        EXPECT_EQ(runs.load(), 3);
        EXPECT_EQ(seen.load(), reply.value());
    }
}

TEST(Threads, waitForFinishedWakesOnAnotherThreadsAnswer)
{
    CMReply<QString> reply;
    EXPECT_FALSE(reply.waitForFinished(10));
    std::thread answer([reply] { reply.setValue(QStringLiteral("done")); });
    EXPECT_TRUE(reply.waitForFinished(kPatienceMs));
    EXPECT_EQ(reply.value(), QStringLiteral("done"));
    answer.join();
}

TEST(Threads, subscriptionCountsStayExact)
{
    CMSubscribe subscribe;
    QSignalSpy removed(&subscribe, &CMSubscribe::rowsPathRemoved);
    CMPath const path(QStringLiteral("airable:"), QStringLiteral("x"));
    subscribe.addWatcher(path); // held throughout, so the path never empties
    onThreads(4, [&](int) {
        for (int n = 0; n < 500; ++n) {
            subscribe.addWatcher(path);
            subscribe.removeWatcher(path);
        }
    });
    EXPECT_EQ(subscribe.watcherCount(path), 1);
    EXPECT_EQ(removed.count(), 0);
    subscribe.removeWatcher(path);
    EXPECT_EQ(removed.count(), 1);
}

namespace {
struct Counted : portable::ReferenceCountedObject
{
    explicit Counted(std::atomic<int>* destroyed) : destroyed(destroyed) {}
    ~Counted() override { ++*destroyed; }
    std::atomic<int>* destroyed;
};
} // namespace

TEST(Threads, smartPointerCountsStayExact)
{
    std::atomic<int> destroyed{0};
    portable::SmartPointer<Counted> shared(new Counted(&destroyed));
    onThreads(4, [shared](int) {
        for (int n = 0; n < 10000; ++n) {
            portable::SmartPointer<Counted> copy = shared;
            Q_UNUSED(copy)
        }
    });
    EXPECT_EQ(shared->refCount(), 1);
    shared = nullptr;
    EXPECT_EQ(destroyed.load(), 1);
}
