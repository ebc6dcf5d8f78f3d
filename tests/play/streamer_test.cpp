#include "play_fixture.h"

class Streamer : public Play
{
protected:
    bool reaches(SimulatedStreamer const& s, int state)
    {
        return waitFor([&] { return s.state() == state; });
    }

    // A radio's own path read as one value, the way a command line plays it.
    TarnRoles radio(QString const& id)
    {
        QStringList const roles{TarnRoles::Title(), TarnRoles::Path(), TarnRoles::MediaData()};
        auto read = TarnClient::data(at(QStringLiteral("/airable/radios/") + id), roles);
        EXPECT_TRUE(TarnClient::wait(read, kPatienceMs));
        return TarnRoles(CMGlobal::rolesValuesToHash(roles, read.value()));
    }

    // The streams asked for, without the events the cloud hears meanwhile.
    QStringList streamCalls() const { return paths().filter(QStringLiteral("/streams/")); }
};

TEST_F(Streamer, playsARadioThroughItsPrePlayPathAndFallsBackToTheNextStream)
{
    SimulatedStreamer streamer;
    streamer.makeActive();
    QStringList steps;
    QList<TarnPlayLogicData> states;
    QObject::connect(&streamer, &SimulatedStreamer::step, [&](QString const& s) { steps << s; });
    QObject::connect(&streamer, &SimulatedStreamer::stateChanged, [&](TarnPlayLogicData const& d) { states << d; });

    TarnRoles const radio = this->radio(QStringLiteral("r1001"));
    streamer.play(radio);
    ASSERT_TRUE(reaches(streamer, TarnPlayLogicData::Playing)) << steps.join('\n').toStdString();

    // The first stream within the limit, asked with the resource's data.
    EXPECT_EQ(streamCalls(), QStringList{QStringLiteral("/airable/radios/r1001/streams/1")});
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
    EXPECT_EQ(streamCalls().last(), QStringLiteral("/airable/radios/r1001/streams/2"));

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

TEST_F(Streamer, aRefusedPrePlayTriesTheNextResourceAndTheLastFailureKeepsTheModulesText)
{
    SimulatedStreamer streamer;
    streamer.makeActive();
    QList<TarnPlayLogicData> states;
    QObject::connect(&streamer, &SimulatedStreamer::stateChanged, [&](TarnPlayLogicData const& d) { states << d; });
    TarnRoles const radio = this->radio(QStringLiteral("r1001"));

    // Resources 128 (streams/1) and 64 (streams/2) within the limit.
    cloud->setFault(QStringLiteral("/airable/radios/r1001/streams/1"), cloudsim::Fault::status(503));
    streamer.play(radio);
    ASSERT_TRUE(reaches(streamer, TarnPlayLogicData::Playing));
    EXPECT_TRUE(streamer.uri().endsWith(QStringLiteral("r1001-64.aac"))) << streamer.uri().toStdString();
    QList<int> seen;
    for (auto const& s : states)
        seen << s.state();
    EXPECT_EQ(seen, QList<int>({TarnPlayLogicData::Preparing, TarnPlayLogicData::Preparing,
                                TarnPlayLogicData::Playing}))
        << "a resource tried again is no stop";
    EXPECT_EQ(states.last().streamId(), 1);

    cloud->setFault(QStringLiteral("/airable/radios/r1001/streams/*"), cloudsim::Fault::status(503));
    states.clear();
    streamer.play(radio);
    ASSERT_TRUE(waitFor([&] { return !streamer.errorName().isEmpty(); }));
    EXPECT_EQ(streamer.state(), TarnPlayLogicData::Stopped);
    EXPECT_EQ(streamer.errorName(), TarnPlaylogicErrorName::TarnPlaylogicPrepareFailed());
    EXPECT_EQ(streamer.errorText(), QStringLiteral("Can't retrieve track from server"));
    ASSERT_FALSE(states.isEmpty());
    EXPECT_EQ(states.last().error(), TarnPlaylogicErrorName::TarnPlaylogicPrepareFailed());
    EXPECT_FALSE(states.last().__contains(TarnPlayLogicData::StreamId())) << "no stream played";
}

TEST_F(Streamer, stopsCarryTheirReasonAndANewTrackStopsTheOldOneFirst)
{
    SimulatedStreamer streamer;
    streamer.makeActive();
    QList<TarnPlayLogicData> states;
    QObject::connect(&streamer, &SimulatedStreamer::stateChanged, [&](TarnPlayLogicData const& d) { states << d; });
    QList<TarnRoles> const radios{radio(QStringLiteral("r1001")), radio(QStringLiteral("r1002"))};

    streamer.play(radios[0]);
    ASSERT_TRUE(reaches(streamer, TarnPlayLogicData::Playing));
    states.clear();
    streamer.play(radios[1]);
    ASSERT_TRUE(reaches(streamer, TarnPlayLogicData::Playing));
    ASSERT_EQ(states.size(), 3);
    EXPECT_EQ(states[0].state(), TarnPlayLogicData::Stopped);
    EXPECT_EQ(states[0].trackRoles().path(), radios[0].path());
    EXPECT_TRUE(states[0].error().isEmpty());
    EXPECT_EQ(states[1].state(), TarnPlayLogicData::Preparing);
    EXPECT_EQ(states[2].trackRoles().path(), radios[1].path());
    EXPECT_EQ(states[2].streamId(), 2) << "a new stream, a new id";

    // An order of the service is no stop of the user's.
    streamer.stop(TarnPlayLogicStopReason::Service);
    ASSERT_TRUE(reaches(streamer, TarnPlayLogicData::Stopped));
    EXPECT_TRUE(states.last().error().isEmpty());

    streamer.play(radios[0]);
    ASSERT_TRUE(reaches(streamer, TarnPlayLogicData::Playing));
    streamer.stop(TarnPlayLogicStopReason::User);
    ASSERT_TRUE(reaches(streamer, TarnPlayLogicData::Stopped));
    EXPECT_EQ(states.last().error(), TarnPlaylogicErrorName::TarnPlaylogicUserStop());
    EXPECT_EQ(states.last().trackRoles().path(), radios[0].path());
    EXPECT_EQ(streamer.errorName(), TarnPlaylogicErrorName::TarnPlaylogicUserStop());
}
