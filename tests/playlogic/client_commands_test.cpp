#include "playlogic_fixture.h"
#include "tarnconstants.h"

using Data = TarnPlayLogicData;

TEST_F(PlayLogicTest, clientPlaysSkipsAndGoesBackThroughSetData)
{
    CMReply<QVariant> const started = finished(play());
    EXPECT_FALSE(started.hasError());
    ASSERT_TRUE(publishedIs("t0", Data::Playing));
    EXPECT_TRUE(controlsOf(published()).next_());
    EXPECT_EQ(PlayLogicInterface::playerInstance(), logic);

    // Two skips pressed at once are worked one after the other.
    QStringList answered;
    CMReply<QVariant> const first = send(TarnPlayLogicRoles::Next());
    CMReply<QVariant> const second = send(TarnPlayLogicRoles::Next());
    first.onFinished([&](CMReply<QVariant> const&) { answered << "first"; });
    second.onFinished([&](CMReply<QVariant> const&) { answered << "second"; });
    finished(second);
    EXPECT_EQ(answered, (QStringList{"first", "second"}));
    ASSERT_TRUE(publishedIs("t2", Data::Playing));
    EXPECT_FALSE(controlsOf(published()).next_());
    EXPECT_EQ(finished(send(TarnPlayLogicRoles::Next())).error().name(), QStringLiteral("noMoreTracks"));

    // Early in a track previous goes back; past the limit it restarts the track.
    finished(send(TarnPlayLogicRoles::Previous()));
    ASSERT_TRUE(publishedIs("t1", Data::Playing));
    streamer.advance(TarnPreviousTrackTimeLimit() + 1);
    ASSERT_TRUE(waitUntil([&] { return logic->playTime() > TarnPreviousTrackTimeLimit(); }));
    finished(send(TarnPlayLogicRoles::Previous()));
    EXPECT_EQ(streamer.currentId(), QStringLiteral("t1"));
    EXPECT_EQ(streamer.position(), 0);
    EXPECT_EQ(logic->playTime(), 0);
}

TEST_F(PlayLogicTest, watcherSeesEveryChangeUpToTheUsersStop)
{
    CMRowsWatch watch(path);
    ASSERT_TRUE(watch.isValid());
    QList<int> states;
    QObject::connect(&watch, &CMRowsWatch::changed, [&](QString const& type, int, int) {
        EXPECT_EQ(type, CMSubscribe::RowsChangeReset());
        states << published().state();
    });

    finished(play());
    ASSERT_TRUE(waitUntil([&] { return states.contains(Data::Playing); }));
    finished(send(TarnPlayLogicRoles::Pause()));
    ASSERT_TRUE(waitUntil([&] { return states.contains(Data::Paused); }));
    finished(send(TarnPlayLogicRoles::Pause()));
    ASSERT_TRUE(waitUntil([&] { return states.endsWith(Data::Playing); }));
    EXPECT_FALSE(finished(send(TarnPlayLogicRoles::Stop())).hasError());
    EXPECT_EQ(states, (QList<int>{Data::Preparing, Data::Playing, Data::Paused, Data::Playing, Data::Stopped}));

    // A stop leaves nothing held and says the user stopped; a listing of the
    // path carries the same data.
    Data const stopped = published();
    EXPECT_EQ(stopped.error(), TarnPlaylogicErrorName::TarnPlaylogicUserStop());
    EXPECT_TRUE(stopped.trackRoles().isEmpty());
    EXPECT_FALSE(stopped.__contains(TarnPlayLogicDataKey::Controls()));
    EXPECT_TRUE(streamer.currentId().isEmpty());
    CMGetRowsRequest const listing(path, 0, 9, -1, {TarnRoles::Value()});
    CMRoot()->request(listing);
    EXPECT_EQ(Data(listing.reply().value().roles().value(TarnRoles::Value()).toHash()), stopped);

    EXPECT_EQ(finished(send(TarnPlayLogicRoles::Pause())).error().name(), QStringLiteral("notPlaying"));
}

TEST_F(PlayLogicTest, likeSeekAndPlayModeAndWhatTheLogicRefuses)
{
    finished(play());
    ASSERT_TRUE(publishedIs("t0", Data::Playing));
    auto rating = [&] { return TarnRating(finished(send(TarnPlayLogicRoles::Like())).value().toHash()).threeStateValue(); };
    EXPECT_EQ(rating(), TarnRatingThreeStateValues::Positive);
    EXPECT_EQ(rating(), TarnRatingThreeStateValues::Neutral);

    finished(send(TarnPlayLogicRoles::SeekTime(), 5000));
    EXPECT_EQ(streamer.position(), 5000);
    EXPECT_EQ(logic->playTime(), 5000);

    struct Refusal
    {
        QString role;
        QVariant value;
        QString error;
    };
    for (Refusal const& r : {Refusal{TarnPlayLogicRoles::Dislike(), {}, "notSupported"},
                             Refusal{TarnPlayLogicRoles::SeekTime(), "soon", CMError::InvalidArgumentName()},
                             Refusal{TarnPlayLogicRoles::PlayMode(), TarnPlayMode::Shuffle(), CMError::InvalidArgumentName()},
                             Refusal{"rewind", {}, CMError::InvalidArgumentName()}})
        EXPECT_EQ(finished(send(r.role, r.value)).error().name(), r.error) << r.role.toStdString();

    EXPECT_FALSE(finished(send(TarnPlayLogicRoles::PlayMode(), TarnPlayMode::Normal())).hasError());
    EXPECT_EQ(published().value(TarnPlayLogicDataKey::PlayMode()).toString(), TarnPlayMode::Normal());
}
