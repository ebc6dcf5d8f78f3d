#include "play_fixture.h"

class Streamer : public Play
{
protected:
    bool reaches(SimulatedStreamer const& s, int state)
    {
        return waitFor([&] { return s.state() == state; });
    }
};

TEST_F(Streamer, playsARadioThroughItsPrePlayPathAndFallsBackToTheNextStream)
{
    SimulatedStreamer streamer;
    streamer.makeActive();
    QStringList steps;
    QList<TarnPlayLogicData> states;
    QObject::connect(&streamer, &SimulatedStreamer::step, [&](QString const& s) { steps << s; });
    QObject::connect(&streamer, &SimulatedStreamer::stateChanged, [&](TarnPlayLogicData const& d) { states << d; });

    // A radio's own path read as one value, the way a command line plays it.
    QStringList const roles{TarnRoles::Title(), TarnRoles::Path(), TarnRoles::MediaData()};
    auto read = TarnClient::data(at(QStringLiteral("/airable/radios/r1001")), roles);
    ASSERT_TRUE(TarnClient::wait(read, 10000));
    TarnRoles const radio(CMGlobal::rolesValuesToHash(roles, read.value()));
    streamer.play(radio);
    ASSERT_TRUE(reaches(streamer, TarnPlayLogicData::Playing)) << steps.join('\n').toStdString();

    // The first stream within the limit, asked with the resource's data.
    EXPECT_EQ(paths().mid(1), QStringList{QStringLiteral("/airable/radios/r1001/streams/1")});
    EXPECT_EQ(streamer.uri(), cloud->baseUrl() + QStringLiteral("/media/r1001-128.mp3"));
    EXPECT_EQ(streamer.data().streamId(), 1);
    EXPECT_EQ(streamer.data().trackRoles().path(), radio.path());
    EXPECT_TRUE(steps.contains(QStringLiteral("prePlay ") + radio.mediaData().metaData().prePlayPath().toEncoded()));
    auto const records = probe->eventRecords();
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0].path, radio.path());
    EXPECT_EQ(records[0].urls.size(), 4);

    streamer.advance(3600 * 1000);
    EXPECT_EQ(streamer.state(), TarnPlayLogicData::Playing) << "a live stream has no end";

    streamer.failStream();
    ASSERT_TRUE(waitFor([&] { return streamer.uri().endsWith(QStringLiteral("r1001-64.aac")); }));
    EXPECT_EQ(streamer.resource().uid(), QStringLiteral("1"));
    EXPECT_EQ(streamer.data().streamId(), 2);
    EXPECT_EQ(paths().last(), QStringLiteral("/airable/radios/r1001/streams/2"));

    // Two streams, two tries: the second failure is the last word.
    streamer.failStream(QStringLiteral("decoderError"));
    EXPECT_EQ(streamer.state(), TarnPlayLogicData::Stopped);
    ASSERT_FALSE(states.isEmpty());
    EXPECT_EQ(states.last().error(), QStringLiteral("decoderError"));
    EXPECT_EQ(states.last().state(), TarnPlayLogicData::Stopped);
}

TEST_F(Streamer, tracksEndInVirtualTimeAndTheNextRowFollows)
{
    SimulatedStreamer streamer;
    streamer.makeActive();
    QList<TarnRoles> const tracks = rowRoles(at(QStringLiteral("/amazon/albums/am-al1")), 0, 1);
    ASSERT_EQ(tracks.size(), 2);
    streamer.play(tracks);
    ASSERT_TRUE(reaches(streamer, TarnPlayLogicData::Playing));
    EXPECT_FALSE(streamer.resource().cryptoData().isNull());

    streamer.pause();
    ASSERT_TRUE(reaches(streamer, TarnPlayLogicData::Paused));
    streamer.advance(200 * 1000);
    EXPECT_EQ(streamer.positionMs(), 0) << "time stands still while paused";
    streamer.pause();
    ASSERT_TRUE(reaches(streamer, TarnPlayLogicData::Playing));

    streamer.advance(180 * 1000);
    ASSERT_TRUE(waitFor([&] { return streamer.uri().endsWith(QStringLiteral("am-al1t2.flac")); }));
    EXPECT_EQ(streamer.trackRoles().path(), tracks[1].path());

    streamer.next();
    ASSERT_TRUE(reaches(streamer, TarnPlayLogicData::Stopped));
    EXPECT_TRUE(streamer.data().trackRoles().isEmpty());
}
