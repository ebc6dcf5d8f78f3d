#include "controlqueue.h"
#include "logcapture.h"
#include "playlogic_fixture.h"

namespace {

// Hears the queue's commands as a play logic does, and keeps the order in
// which replies were answered.
struct Worked
{
    explicit Worked(ControlQueue& queue)
    {
        QObject::connect(&queue, &ControlQueue::control,
                         [this](ControlQueue::ControlCommand c, QVariant const&) { commands << c; });
    }
    CMReply<QVariant> reply(QString const& name)
    {
        CMReply<QVariant> const r;
        r.onFinished([this, name](CMReply<QVariant> const&) { answered << name; });
        return r;
    }
    QList<int> commands;
    QStringList answered;
};

} // namespace

TEST(ControlQueue, worksOneCommandAtATimeAndAnswersInOrder)
{
    ControlQueue queue(false, false);
    Worked worked(queue);
    CMReply<QVariant> const play = worked.reply(QStringLiteral("play"));
    CMReply<QVariant> const next = worked.reply(QStringLiteral("next"));
    CMReply<QVariant> const previous = worked.reply(QStringLiteral("previous"));
    queue.play(QStringLiteral("args"), play);
    queue.next(QVariant(), next);
    queue.previous(QVariant(), previous);
    EXPECT_TRUE(worked.commands.isEmpty()) << "a command starts on a later turn of the event loop";

    ASSERT_TRUE(waitUntil([&] { return worked.commands.size() == 1; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(worked.commands, QList<int>{ControlQueue::Play}) << "nothing else starts while play is worked";
    queue.finish(QStringLiteral("playing"));
    EXPECT_EQ(play.value().toString(), QStringLiteral("playing"));

    ASSERT_TRUE(waitUntil([&] { return worked.commands.size() == 2; }));
    queue.finish(CMError(QStringLiteral("noMoreTracks"), TrString("No more tracks")));
    ASSERT_TRUE(waitUntil([&] { return worked.commands.size() == 3; }));
    queue.finish(QVariant());

    EXPECT_EQ(worked.commands, (QList<int>{ControlQueue::Play, ControlQueue::Next, ControlQueue::Previous}));
    EXPECT_EQ(worked.answered, (QStringList{"play", "next", "previous"}));
    EXPECT_EQ(next.error().name(), QStringLiteral("noMoreTracks"));
    EXPECT_FALSE(queue.isBusy());
}

TEST(ControlQueue, clearCancelsTheWorkedAndTheWaitingCommands)
{
    LogCapture log("TarnApi");
    ControlQueue queue(false, false);
    Worked worked(queue);
    CMReply<QVariant> const play = worked.reply(QStringLiteral("play"));
    CMReply<QVariant> const next = worked.reply(QStringLiteral("next"));
    queue.play(QVariant(), play);
    queue.next(QVariant(), next);
    ASSERT_TRUE(waitUntil([&] { return queue.isBusy(); }));

    queue.clear();
    EXPECT_EQ(play.error().name(), ControlQueue::CancelledErrorName());
    EXPECT_EQ(next.error().name(), ControlQueue::CancelledErrorName());
    queue.finish(QVariant());
    EXPECT_TRUE(log.contains(QStringLiteral("Control queue: finish without a command being worked")));

    // The queue works again afterwards, and a dropped command never starts.
    CMReply<QVariant> const again = worked.reply(QStringLiteral("again"));
    queue.next(QVariant(), again);
    ASSERT_TRUE(waitUntil([&] { return queue.isBusy(); }));
    queue.finish(QVariant());
    EXPECT_EQ(worked.commands, (QList<int>{ControlQueue::Play, ControlQueue::Next}));
    EXPECT_TRUE(again.isFinished() && !again.hasError());
}

// The flags: a play cancels what waits but not what is being worked; a
// prepare is queued once, worked or waiting.
TEST(ControlQueue, flagsDropWaitingCommandsOnlyWhenAsked)
{
    for (bool flag : {true, false}) {
        ControlQueue queue(flag, flag);
        Worked worked(queue);
        CMReply<QVariant> const first = worked.reply(QStringLiteral("next1"));
        CMReply<QVariant> const waiting = worked.reply(QStringLiteral("next2"));
        queue.prepareNext();
        ASSERT_TRUE(waitUntil([&] { return queue.isBusy(); }));
        queue.prepareNext();
        EXPECT_EQ(queue.waitingCount(), flag ? 0 : 1);
        queue.clear();

        queue.next(QVariant(), first);
        ASSERT_TRUE(waitUntil([&] { return queue.isBusy(); }));
        queue.next(QVariant(), waiting);
        queue.play(QVariant(), worked.reply(QStringLiteral("play")));
        EXPECT_FALSE(first.isFinished());
        EXPECT_EQ(waiting.error().name(), flag ? ControlQueue::CancelledErrorName() : QString());
        queue.clear();
    }
}
