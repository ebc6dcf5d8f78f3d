#include "dialogs_fixture.h"

#include "cmroot.h"
#include "tarnplaylogicdata.h"

#include <QRegularExpression>

class Events : public Dialogs
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/st/1": {"id": ["qobuz", "redirect", "s1"], "url": "{base}/media/one.mp3",
            "events": {"start": "{base}/ev/start", "pause": "{base}/ev/pause", "stop": "{base}/ev/stop",
                       "error": "{base}/ev/error"}},
  "/st/2": {"id": ["qobuz", "redirect", "s2"], "url": "{base}/media/two.mp3",
            "events": {"start": "{base}/ev/2/start"}},
  "/st/quiet": {"id": ["qobuz", "redirect", "s3"], "url": "{base}/media/three.mp3"},
  "/st/4": {"id": ["qobuz", "redirect", "s4"], "url": "{base}/media/four.mp3",
            "events": {"start": "{base}/ev/4/start"}},
  "/ev/4/start": {"@body": ""},
  "/ev/start": {"@body": ""},
  "/ev/pause": {"@body": ""},
  "/ev/stop": {"id": ["airable", "listing", "true"]},
  "/ev/2/start": {"@body": ""},
  "/ev/error": {"id": ["qobuz", "message", "failed"], "title": "Playback failed", "description": "Try later",
                "buttons": [{"id": ["qobuz", "button", "ok"], "title": "OK", "url": "{base}/qobuz"}]}
})";
    }

    void SetUp() override
    {
        Dialogs::SetUp();
        CMRootWorker::instance()->setAction(TarnNotificationDisplayOpenPath(),
                                            [this](TarnHash const& args, CMReply<QVariant> const& reply) {
                                                shown << TarnValue(args).notificationDisplayItem().path();
                                                reply.setValue(QVariant());
                                            });
    }
    void TearDown() override
    {
        CMRootWorker::instance()->setAction(TarnNotificationDisplayOpenPath(), nullptr);
        Dialogs::TearDown();
    }

    // Resolves the stream of an item as the player does before it plays.
    void prepare(QString const& item, QString const& stream)
    {
        TarnRoles roles;
        roles.setPath(at(item));
        roles.setMediaData(TarnMediaData().setResources(
            {TarnResource().setData(cloud->baseUrl() + stream).setUid(QStringLiteral("0")).__variant()}));
        CMPath const prePlay = worker->addPrefix(QStringLiteral("preplay:") + cloud->baseUrl() + item);
        ASSERT_FALSE(set(prePlay, roles.__variant()).hasError());
    }

    // One report of the player.
    void report(QString const& item, int state, int streamId = -1, QString const& error = QString())
    {
        TarnPlayLogicData data;
        data.setTrackRoles(TarnRoles().setPath(at(item))).setState(state);
        if (streamId >= 0)
            data.setStreamId(streamId);
        if (!error.isEmpty())
            data.setError(error);
        ASSERT_FALSE(set(worker->addPrefix(TarnAirableStateChange()), data.__variant()).hasError());
    }

    QStringList eventCalls() const { return paths().filter(QRegularExpression(QStringLiteral("^/ev/"))); }

    QList<CMPath> shown;
};

TEST_F(Events, playPauseResumeAndStopReachTheCloudInOrderOneCallAtATime)
{
    prepare(QStringLiteral("/track"), QStringLiteral("/st/1"));
    // Slow answers: a second call sent before the first finished would
    // overtake it.
    cloud->setFault(QStringLiteral("/ev/*"), cloudsim::Fault::delay(150));
    LogCapture log;
    report(QStringLiteral("/track"), TarnPlayLogicData::Preparing);
    report(QStringLiteral("/track"), TarnPlayLogicData::Playing, 1);
    report(QStringLiteral("/track"), TarnPlayLogicData::Playing, 1);
    report(QStringLiteral("/track"), TarnPlayLogicData::Paused, 1);
    report(QStringLiteral("/track"), TarnPlayLogicData::Playing, 1);
    report(QStringLiteral("/track"), TarnPlayLogicData::Stopped, 1, TarnPlaylogicErrorName::TarnPlaylogicUserStop());
    ASSERT_TRUE(waitFor([&] { return eventCalls().size() == 4; }));
    EXPECT_EQ(eventCalls(), (QStringList{QStringLiteral("/ev/start"), QStringLiteral("/ev/pause"),
                                         QStringLiteral("/ev/start"), QStringLiteral("/ev/stop")}));
    EXPECT_TRUE(waitFor([&] { return log.count(QStringLiteral("Report event success")) == 4; }));
    EXPECT_TRUE(log.contains(QStringLiteral("Event queue size: 2")));
}

TEST_F(Events, aFailedStreamReportsErrorAndTheCloudsMessageIsShownOnce)
{
    prepare(QStringLiteral("/track"), QStringLiteral("/st/1"));
    LogCapture log;
    report(QStringLiteral("/track"), TarnPlayLogicData::Stopped, 1, TarnPlaylogicErrorName::TarnPlaylogicStreamFailed());
    ASSERT_TRUE(waitFor([&] { return shown.size() == 1; }));
    EXPECT_EQ(shown.first(), worker->addPrefix(TarnAirablePrefixMessage() + QStringLiteral("1")));

    report(QStringLiteral("/track"), TarnPlayLogicData::Stopped, 1, TarnPlaylogicErrorName::TarnPlaylogicStreamFailed());
    ASSERT_TRUE(waitFor([&] { return log.contains(QStringLiteral("Another notification already shown")); }));
    EXPECT_EQ(shown.size(), 1);
    EXPECT_EQ(eventCalls(), (QStringList{QStringLiteral("/ev/error"), QStringLiteral("/ev/error")}));
}

TEST_F(Events, recordsFollowThePlayOrderAndReportsWithoutUrlsAreDropped)
{
    prepare(QStringLiteral("/one"), QStringLiteral("/st/1"));
    prepare(QStringLiteral("/quiet"), QStringLiteral("/st/quiet"));
    prepare(QStringLiteral("/two"), QStringLiteral("/st/2"));
    ASSERT_EQ(probe->eventRecords().size(), 2) << "a stream without events leaves no record";

    LogCapture log;
    report(QStringLiteral("/quiet"), TarnPlayLogicData::Playing, 7);
    EXPECT_TRUE(waitFor([&] {
        return log.contains(QStringLiteral("doesn't exist, ignoring: start"));
    }));
    report(QStringLiteral("/two"), TarnPlayLogicData::Playing, 8);
    report(QStringLiteral("/two"), TarnPlayLogicData::Paused, 8);
    ASSERT_TRUE(waitFor([&] { return log.contains(QStringLiteral("Report event success")); }));
    EXPECT_EQ(eventCalls(), QStringList{QStringLiteral("/ev/2/start")}) << "stream 2 has no pause URL";
    EXPECT_EQ(probe->eventRecords().size(), 1) << "the stream before it is history";

    report(QStringLiteral("/one"), TarnPlayLogicData::Stopped, 8);
    EXPECT_TRUE(waitFor([&] { return log.contains(QStringLiteral("doesn't exist, ignoring: stop")); }));
}

// Each report that is dropped hands over to the next with a call of its own,
// which says the queue's size again.
TEST_F(Events, aDroppedReportPassesOnAndAStreamBehindTwoOthersMakesBothHistory)
{
    prepare(QStringLiteral("/one"), QStringLiteral("/st/1"));
    prepare(QStringLiteral("/two"), QStringLiteral("/st/2"));
    prepare(QStringLiteral("/four"), QStringLiteral("/st/4"));
    ASSERT_EQ(probe->eventRecords().size(), 3);

    LogCapture log;
    report(QStringLiteral("/quiet"), TarnPlayLogicData::Playing, 7);
    ASSERT_TRUE(waitFor([&] { return log.contains(QStringLiteral("Event queue size: 0")); }));
    QStringList const queue = log.lines().filter(QRegularExpression(QStringLiteral("Event queue size|ignoring")));
    ASSERT_EQ(queue.size(), 3) << queue.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(queue[0].endsWith(QStringLiteral("Event queue size: 1")));
    EXPECT_TRUE(queue[1].endsWith(QStringLiteral("doesn't exist, ignoring: start")));
    EXPECT_TRUE(queue[2].endsWith(QStringLiteral("Event queue size: 0")));
    EXPECT_EQ(probe->eventRecords().size(), 3) << "an unknown stream erases nothing";

    report(QStringLiteral("/four"), TarnPlayLogicData::Playing, 9);
    ASSERT_TRUE(waitFor([&] { return log.contains(QStringLiteral("Report event success")); }));
    EXPECT_EQ(probe->eventRecords().size(), 1);
    EXPECT_EQ(eventCalls(), QStringList{QStringLiteral("/ev/4/start")});
}
