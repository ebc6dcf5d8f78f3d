#include "cmroot.h"
#include "cmsubscribe.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QThread>
#include <gtest/gtest.h>

TEST(Subscribe, pathIsRemovedOnceWhenItsLastWatcherLeaves)
{
    CMSubscribe subscribe;
    QSignalSpy removed(&subscribe, &CMSubscribe::rowsPathRemoved);
    CMPath const path(QStringLiteral("airable:"), QStringLiteral("http://cloud/list"));
    subscribe.addWatcher(path);
    subscribe.addWatcher(path);
    subscribe.removeWatcher(path);
    EXPECT_EQ(removed.count(), 0);
    subscribe.removeWatcher(path);
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed.at(0).at(0).value<CMPath>(), path);
    subscribe.removeWatcher(path); // nobody left: no second signal
    EXPECT_EQ(removed.count(), 1);
}

namespace {
class TreeWorker : public CMNodesWorker
{
public:
    TreeWorker() : CMNodesWorker({}, QStringLiteral("Tree")) {}
};
} // namespace

TEST(Subscribe, rowsWatchThroughTheRootSeesChangesOfItsPathOnly)
{
    TreeWorker worker;
    CMRootWorker::instance()->addWorker(&worker);
    CMPath const mine = worker.addPrefix(QStringLiteral("a"));
    CMPath const other = worker.addPrefix(QStringLiteral("b"));
    QSignalSpy removed(worker.nodes()->subscribe(), &CMSubscribe::rowsPathRemoved);
    {
        CMRowsWatch watch(mine);
        ASSERT_TRUE(watch.isValid());
        QSignalSpy changes(&watch, &CMRowsWatch::changed);
        worker.nodes()->subscribe()->changed(other, CMSubscribe::RowsChangeReset(), -1, -1);
        worker.nodes()->subscribe()->changed(mine, CMSubscribe::RowsChangeReset(), -1, -1);
        ASSERT_EQ(changes.count(), 1);
        EXPECT_EQ(changes.at(0).at(0).toString(), CMSubscribe::RowsChangeReset());
    }
    EXPECT_EQ(removed.count(), 1);
    EXPECT_FALSE(CMRowsWatch(CMPath(QStringLiteral("nobody:"), QString())).isValid());
    CMRootWorker::instance()->removeWorker(&worker);
}
