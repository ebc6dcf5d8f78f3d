#include "program_fixture.h"
#include "trstring.h"

#include <condition_variable>
#include <functional>
#include <mutex>

namespace {

// A track of a program, a minute long, with one stream unless it has none,
// and the three rating actions.
struct Track
{
    QString service;
    QString id;
    bool streams = true;
    bool liked = false;
    QString likeUrl = QString(); // "{base}/rate/<id>/up" when empty
};

QByteArray json(Track const& t)
{
    QString const like = t.likeUrl.isEmpty() ? QStringLiteral("{base}/rate/%1/up").arg(t.id) : t.likeUrl;
    QString out = QStringLiteral(R"({"id": ["%1", "track", "%2"], "title": "Track %2", "url": "{base}/%1/tracks/%2",)"
                                 R"("duration": 60,)")
                      .arg(t.service, t.id);
    if (t.streams)
        out += QStringLiteral(R"("streams": [{"id": ["%1", "radio.stream", "%2"], "url": "{base}/%1/streams/%2",)"
                              R"("codec": {"name": "mp3", "bitrate": 128}}],)")
                   .arg(t.service, t.id);
    out += QStringLiteral(R"("actions": [{"id": ["%1", "action", "rate.positive"], "url": "%3", "active": %4},)"
                          R"({"id": ["%1", "action", "rate.neutral"], "url": "{base}/rate/%2/none"},)"
                          R"({"id": ["%1", "action", "rate.negative"], "url": "{base}/rate/%2/down"}]})")
               .arg(t.service, t.id, like, t.liked ? QStringLiteral("true") : QStringLiteral("false"));
    return out.toUtf8();
}

// A program answer: its skip object and pagination, if any, and its tracks.
QByteArray program(QString const& service, QList<Track> const& tracks, QByteArray const& skip = {},
                   QByteArray const& pagination = {})
{
    QByteArray out = R"({"id": [")" + service.toUtf8() + R"(", "program", "p"], "title": "Program",)";
    if (!skip.isEmpty())
        out += R"("skip": )" + skip + ",";
    out += R"("content": {)";
    if (!pagination.isEmpty())
        out += R"("pagination": )" + pagination + ",";
    out += R"("entries": [)";
    for (int i = 0; i < tracks.size(); ++i)
        out += (i ? "," : "") + json(tracks[i]);
    return out + "]}}";
}

Track deezer(QString const& id, bool streams = true) { return {QStringLiteral("deezer"), id, streams}; }
Track amazon(QString const& id, bool streams = true) { return {QStringLiteral("amazon"), id, streams}; }

// A page's pagination: the next page, and the previous one if given.
QByteArray pages(char const* next, char const* prev = nullptr)
{
    QByteArray out = QByteArray(R"({"next": "{base})") + next + '"';
    if (prev)
        out += QByteArray(R"(, "prev": "{base})") + prev + '"';
    return out + "}";
}

QByteArray skipObject(int available, char const* url)
{
    return QByteArray(R"({"available": )") + QByteArray::number(available) +
           R"(, "status": "{base}/skips", "url": "{base})" + url + R"("})";
}

} // namespace

// Holds the cloud's answers to calls of paths of the form of playback event
// URLs (".../events/start") until released: the cloud tells its event
// listener of such a call, on the thread that serves it, before it answers.
// A test holds an answer this way so that what the module meets while it
// waits comes in a fixed order, whatever the machine's speed.
class HeldCalls
{
public:
    explicit HeldCalls(cloudsim::CloudServer* cloud) : m_cloud(cloud)
    {
        cloud->setEventListener([this](cloudsim::PlaybackEvent const&) {
            std::unique_lock<std::mutex> lock(m_mutex);
            ++m_arrived;
            m_changed.wait(lock, [this] { return m_released; });
        });
    }
    ~HeldCalls()
    {
        release();
        m_cloud->setEventListener(nullptr);
    }

    void release()
    {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_released = true;
        }
        m_changed.notify_all();
    }

    int arrived() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_arrived;
    }

private:
    cloudsim::CloudServer* m_cloud;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_arrived = 0;
    bool m_released = false;
};

// Programs at the edges of what the cloud sends.
class ProgramEdges : public ProgramPlay
{
protected:
    QByteArray documents() const override
    {
        Track liked = deezer(QStringLiteral("m"));
        liked.liked = true;
        Track late = deezer(QStringLiteral("l"));
        late.likeUrl = QStringLiteral("{base}/rate/l/events/start");
        return "{"
               R"("/deezer/one": )" + program("deezer", {deezer("x")}) + ","
               R"("/deezer/headless": )" + program("deezer", {deezer("n1", false), deezer("n2", false),
                                                           deezer("n3", false), deezer("n4", false), deezer("g")}) + ","
               R"("/deezer/broken": {"id": ["deezer", "error", "gone"], "message": "Program gone"},)"
               R"("/deezer/empty": )" + program("deezer", {}) + ","
               R"("/deezer/held/events/start": )" + program("deezer", {deezer("h")}) + ","
               R"("/deezer/noskips": )" + program("deezer", {deezer("a"), deezer("b")}, skipObject(0, "/skip")) + ","
               R"("/deezer/oneskip": )" + program("deezer", {deezer("a"), deezer("b"), deezer("c")},
                                                  skipObject(1, "/skip/events/start")) + ","
               R"("/skip/events/start": {"url": "{base}/skip/events/start", "status": "{base}/skips", "available": 0},)"
               R"("/deezer/twoskips": )" + program("deezer", {deezer("a"), deezer("b"), deezer("c")},
                                                   skipObject(2, "/lostskip/events/start")) + ","
               // The cloud has dropped the token by the time the skip is reported.
               R"("/lostskip/events/start": {"id": ["airable", "error", "authentication"],)"
               R"("message": "Token expired"},)"
               R"("/deezer/rated": )" + program("deezer", {deezer("r")}) + ","
               R"("/rate/r/up": {"id": ["deezer", "action", "rate.positive"], "message": "Liked"},)"
               R"("/rate/r/none": {"id": ["deezer", "action", "rate.neutral"], "message": "Unrated"},)"
               R"("/rate/r/down": {"id": ["deezer", "action", "rate.negative"], "message": "Disliked"},)"
               R"("/deezer/late": )" + program("deezer", {late, liked}) + ","
               R"("/rate/l/events/start": {"id": ["deezer", "error", "refused"],)"
               R"("message": "Rating is not possible now"},)"
               R"("/amazon/last": )" + program("amazon", {amazon("p")}) + ","
               R"("/amazon/empty": )" + program("amazon", {}, {}, pages("/amazon/empty/2")) + ","
               R"("/amazon/empty/2": )" + program("amazon", {amazon("e2")}, {}, pages("/amazon/empty/3")) + ","
               R"("/amazon/barren": )" + program("amazon", {}, {}, pages("/amazon/barren/2")) + ","
               R"("/amazon/barren/2": )" + program("amazon", {amazon("b2", false)}, {},
                                                   pages("/amazon/barren/3")) + ","
               R"("/amazon/barren/3": )" + program("amazon", {}, {}, pages("/amazon/barren/4")) + ","
               R"("/amazon/barren/4": )" + program("amazon", {}, {}, pages("/amazon/barren/5")) + ","
               R"("/amazon/barren/5": )" + program("amazon", {amazon("b5")}) + ","
               R"("/amazon/walk": )" + program("amazon", {amazon("wa")}, {}, pages("/amazon/walk/b")) + ","
               R"("/amazon/walk/b": )" + program("amazon", {amazon("wb")}, {},
                                                 pages("/amazon/walk/c", "/amazon/walk/x")) + ","
               R"("/amazon/walk/x": )" + program("amazon", {amazon("wx", false)}, {},
                                                 pages("/amazon/walk/b", "/amazon/walk/y")) + ","
               R"("/amazon/walk/y": )" + program("amazon", {amazon("wy")}, {}, pages("/amazon/walk/x")) + ","
               R"("/amazon/limited": )" + program("amazon", {amazon("la")}, skipObject(0, "/skip"),
                                                  pages("/amazon/limited/2", "/amazon/limited/0")) + ","
               R"("/amazon/limited/0": )" + program("amazon", {amazon("lz")}, {}, pages("/amazon/limited")) +
               "}";
    }

    QString playingId() { return published().trackRoles().id(); }
    TarnPlayLogicControls controls() { return TarnPlayLogicControls(published().controls()); }
    int rating() { return TarnRating(published().trackRoles().mediaData().metaData().rating()).threeStateValue(); }

    // Lets the worker's thread and the streamer work until a track plays
    // that the condition takes: the streamer has started it, and the play
    // logic has published what the start changed.
    bool settleOn(std::function<bool(TarnRoles const&)> const& condition)
    {
        return waitFor([&] {
            TarnPlayLogicData const data = published();
            return data.state() == TarnPlayLogicData::Playing && condition(data.trackRoles());
        });
    }
    bool settle(std::string const& title)
    {
        return settleOn([&](TarnRoles const& t) { return t.title().toString().toStdString() == title; });
    }
    bool settleAfter(QString const& id)
    {
        return settleOn([&](TarnRoles const& t) { return t.id() != id; });
    }
};

// Translators key on the signature text of the function that raised a text,
// written as the compiler writes it.
TEST_F(ProgramEdges, textsOfTheRetrieversAndThePlayLogicCarryTheSignatureOfTheirFunction)
{
    QList<RaisedText> const rows{
        {"Invalid response from server", "void DeezerTrackRetriever::on_programTracksFetched(const CMVoidReply&)",
         [this] { return start(QStringLiteral("/deezer/broken")).error(); }},
        {"No tracks present in program", "void DeezerTrackRetriever::on_programTracksFetched(const CMVoidReply&)",
         [this] { return start(QStringLiteral("/deezer/empty")).error(); }},
        {"Failed to get valid item", "void AmazonMusicTrackRetriever::on_programFetched(const CMVoidReply&)",
         [this] { return start(QStringLiteral("/amazon/barren")).error(); }},
        {"Could not start audio",
         "void AirableProgramPlayLogic::playInternal(const CMSetDataRequest&, const TarnPlayLogicPlayArgs&)",
         [this] {
             return command(TarnPlayLogicRoles::Play(), TarnPlayLogicPlayArgs().setMediaRoles(TarnRoles()).__variant())
                 .error();
         }},
        // A rating's answer is a title over the cloud's message.
        {"Rating Message",
         "void AirableProgramPlayLogic::handleRatingResponse(const CMReply<AirableConnect::Reply>&, "
         "CMReply<QVariant>, long int, TarnRatingThreeStateValues::Enum)",
         [this] {
             EXPECT_FALSE(start(QStringLiteral("/deezer/rated")).hasError());
             EXPECT_TRUE(settle("Track r"));
             TarnActionReply const answer(TarnHash(command(TarnPlayLogicRoles::Like()).value().toHash()));
             return CMError(CMError::DefaultName(), answer.result().title());
         }},
        // The queue only hands on the commands it knows, so the handler is
        // given an unknown number directly, while the queue works a play
        // whose first batch the cloud holds back: the play is the command
        // the handler ends.
        {"Invalid command",
         "void AirableProgramPlayLogic::on_controlQueue_control(ControlQueue::ControlCommand, const QVariant&)",
         [this] {
             HeldCalls held(cloud.get());
             auto const play = TarnClient::setData(logic(), TarnPlayLogicRoles::Play(),
                                                   playArgs(QStringLiteral("/deezer/held/events/start")));
             EXPECT_TRUE(waitFor([&] { return held.arrived() == 1; }));
             probe->onWorker([this](CMAirableWorker*) {
                 playLogic->on_controlQueue_control(static_cast<ControlQueue::ControlCommand>(3), QVariant());
             });
             EXPECT_TRUE(TarnClient::wait(play, kPatienceMs));
             EXPECT_FALSE(command(TarnPlayLogicRoles::Stop()).hasError());
             return play.error();
         }},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.text);
        TrCharData const data = row.shown();
        EXPECT_EQ(data.source.toStdString(), row.text);
        EXPECT_EQ(data.context.toStdString(), trExtractContext(row.signature).toStdString());
    }
}

// A track handed out as the prepared next stays first in the list until it
// starts: a next before then takes it again, its start consumes it.
TEST_F(ProgramEdges, deezerKeepsAPreparedTrackUntilItStartsOrANextTakesIt)
{
    auto fetches = [this] { return paths().count(QStringLiteral("/deezer/one")); };
    ASSERT_FALSE(start(QStringLiteral("/deezer/one")).hasError());
    ASSERT_TRUE(settle("Track x"));
    EXPECT_EQ(fetches(), 1);

    streamer.advance(56 * 1000);
    ASSERT_TRUE(waitFor([&] { return !streamer.nextId().isEmpty(); }));
    EXPECT_EQ(fetches(), 2) << "the batch of one was spent on the first track";

    QString const first = playingId();
    ASSERT_FALSE(command(TarnPlayLogicRoles::Next()).hasError());
    ASSERT_TRUE(settleAfter(first));
    EXPECT_EQ(fetches(), 2) << "the next takes the prepared track, no new batch";

    streamer.advance(56 * 1000);
    ASSERT_TRUE(waitFor([&] { return !streamer.nextId().isEmpty(); }));
    EXPECT_EQ(fetches(), 3);
    QString const second = playingId();
    streamer.advance(5 * 1000);
    ASSERT_TRUE(settleAfter(second)) << "the prepared track started";
    EXPECT_EQ(fetches(), 3) << "a start fetches nothing";

    ASSERT_FALSE(command(TarnPlayLogicRoles::Next()).hasError());
    EXPECT_EQ(fetches(), 4) << "the started track is no longer in the list";
}

TEST_F(ProgramEdges, deezerSkipsThreeTracksWithoutStreamsAndKeepsTheFourthForTheNextRequest)
{
    LogCapture log;
    auto const play = start(QStringLiteral("/deezer/headless"));
    EXPECT_EQ(play.error().messageText().toStdString(), "Too many invalid items");
    EXPECT_EQ(log.count(QStringLiteral("Skipping track without streams")), 3);

    ASSERT_FALSE(command(TarnPlayLogicRoles::Next()).hasError());
    EXPECT_TRUE(settle("Track g"));
    EXPECT_EQ(log.count(QStringLiteral("Skipping track without streams")), 4) << "the fourth was still first";
    EXPECT_EQ(paths().count(QStringLiteral("/deezer/headless")), 1);
}

TEST_F(ProgramEdges, noSkipsLeftInTheProgramRefusesTheFirstNextWithoutReportingIt)
{
    ASSERT_FALSE(start(QStringLiteral("/deezer/noskips")).hasError());
    ASSERT_TRUE(settle("Track a"));
    EXPECT_TRUE(controls().next_()) << "next stays on, so that pressing it brings the offer";

    auto const refused = command(TarnPlayLogicRoles::Next());
    EXPECT_EQ(refused.error().name(), TarnErrorSkipLimitReached());
    EXPECT_EQ(refused.error().messageText().toStdString(), "Skip limit reached");
    EXPECT_TRUE(refused.error().__contains(CMError::ActionReply()));
    EXPECT_EQ(paths().count(QStringLiteral("/skip")), 0);
    EXPECT_EQ(playing(), "Track a");
}

// The count that decides a next comes with the answer to the last skip; a
// next while that answer is out waits for it.
TEST_F(ProgramEdges, aNextWhileTheSkipReportIsOutWaitsAndFailsWhenTheAnswerSaysNoneAreLeft)
{
    HeldCalls held(cloud.get());
    LogCapture log;
    ASSERT_FALSE(start(QStringLiteral("/deezer/oneskip")).hasError());
    ASSERT_TRUE(settle("Track a"));
    ASSERT_FALSE(command(TarnPlayLogicRoles::Next()).hasError()) << "the track comes beside the report";
    ASSERT_TRUE(settle("Track b"));
    ASSERT_TRUE(waitFor([&] { return held.arrived() == 1; }));

    auto const waiting = TarnClient::setData(logic(), TarnPlayLogicRoles::Next(), QVariant());
    ASSERT_TRUE(waitFor([&] { return log.contains(QStringLiteral("Skip limit is fetching, wait")); }));
    EXPECT_FALSE(waiting.isFinished());

    held.release();
    ASSERT_TRUE(TarnClient::wait(waiting, kPatienceMs));
    EXPECT_EQ(waiting.error().name(), TarnErrorSkipLimitReached());
    EXPECT_TRUE(log.contains(QStringLiteral("Skip fetched, available skips: 0")));
    EXPECT_EQ(held.arrived(), 1) << "the refused next reports nothing";
    EXPECT_EQ(playing(), "Track b");
}

TEST_F(ProgramEdges, aFailedSkipReportKeepsTheCountAndTheWaitingNextGoesOn)
{
    HeldCalls held(cloud.get());
    LogCapture log;
    ASSERT_FALSE(start(QStringLiteral("/deezer/twoskips")).hasError());
    ASSERT_TRUE(settle("Track a"));
    ASSERT_FALSE(command(TarnPlayLogicRoles::Next()).hasError());
    ASSERT_TRUE(settle("Track b"));
    ASSERT_TRUE(waitFor([&] { return held.arrived() == 1; }));

    auto const waiting = TarnClient::setData(logic(), TarnPlayLogicRoles::Next(), QVariant());
    ASSERT_TRUE(waitFor([&] { return log.contains(QStringLiteral("Skip limit is fetching, wait")); }));
    // The report's answer refuses the token, and the cloud refuses the new
    // authentication too: the report fails.
    cloud->setFault(QStringLiteral("/authentication"), cloudsim::Fault::refusedSecret());
    held.release();
    ASSERT_TRUE(TarnClient::wait(waiting, kPatienceMs));
    EXPECT_FALSE(waiting.hasError()) << "two skips were left, and still are: "
                                     << waiting.error().messageText().toStdString();
    EXPECT_TRUE(settle("Track c"));
    EXPECT_TRUE(log.contains(QStringLiteral("Fetch skip url failed: ")));
    EXPECT_FALSE(log.contains(QStringLiteral("Skip fetched")));
}

// A program answer without a skip object lifts the limit an earlier one set.
TEST_F(ProgramEdges, aPageWithoutASkipObjectLiftsTheLimitOfTheOneBefore)
{
    ASSERT_FALSE(start(QStringLiteral("/amazon/limited")).hasError());
    ASSERT_TRUE(settle("Track la"));
    EXPECT_FALSE(controls().next_()) << "no skips left";
    auto const refused = command(TarnPlayLogicRoles::Next());
    EXPECT_EQ(refused.error().name(), TarnErrorSkipLimitReached());
    EXPECT_FALSE(refused.error().__contains(CMError::ActionReply())) << "the offer is Deezer's";

    ASSERT_FALSE(command(TarnPlayLogicRoles::Previous()).hasError()) << "going back uses no skip";
    ASSERT_TRUE(settle("Track lz"));
    EXPECT_TRUE(controls().next_());
    ASSERT_FALSE(command(TarnPlayLogicRoles::Next()).hasError());
    EXPECT_TRUE(settle("Track la"));
    EXPECT_EQ(paths().count(QStringLiteral("/skip")), 0);
}

TEST_F(ProgramEdges, amazonNextWithoutANextPageAsksTheEmptyUrlWhilePrepareRefusesIt)
{
    LogCapture log;
    ASSERT_FALSE(start(QStringLiteral("/amazon/last")).hasError());
    ASSERT_TRUE(settle("Track p"));
    EXPECT_FALSE(controls().next_());

    streamer.advance(56 * 1000);
    ASSERT_TRUE(waitFor([&] { return log.contains(QStringLiteral("Empty next track url!")); }));
    EXPECT_TRUE(streamer.nextId().isEmpty());

    auto const next = command(TarnPlayLogicRoles::Next());
    EXPECT_EQ(next.error().messageText().toStdString(), "Invalid response from server");
    EXPECT_TRUE(log.contains(QStringLiteral("Unexpected json: ")));
    EXPECT_EQ(playing(), "Track p");
}

// Pages without a usable first track are passed over, in the direction of
// the walk, three in a row at most.
TEST_F(ProgramEdges, amazonPassesOverPagesWithoutAPlayableFirstTrack)
{
    LogCapture log;
    ASSERT_FALSE(start(QStringLiteral("/amazon/empty")).hasError());
    EXPECT_TRUE(settle("Track e2"));
    EXPECT_EQ(log.count(QStringLiteral("Skipping track without streams")), 1);

    log.clear();
    cloud->clearLog();
    EXPECT_EQ(start(QStringLiteral("/amazon/barren")).error().messageText().toStdString(), "Failed to get valid item");
    EXPECT_EQ(log.count(QStringLiteral("Skipping track without streams")), 3);
    EXPECT_EQ(paths(), (QStringList{QStringLiteral("/amazon/barren"), QStringLiteral("/amazon/barren/2"),
                                    QStringLiteral("/amazon/barren/3"), QStringLiteral("/amazon/barren/4")}));

    ASSERT_FALSE(start(QStringLiteral("/amazon/walk")).hasError());
    ASSERT_TRUE(settle("Track wa"));
    ASSERT_FALSE(command(TarnPlayLogicRoles::Next()).hasError());
    ASSERT_TRUE(settle("Track wb"));
    cloud->clearLog();
    ASSERT_FALSE(command(TarnPlayLogicRoles::Previous()).hasError());
    EXPECT_TRUE(settle("Track wy"));
    EXPECT_EQ(paths(), (QStringList{QStringLiteral("/amazon/walk/x"), QStringLiteral("/amazon/walk/y")}));
}

TEST_F(ProgramEdges, aDislikedTrackLikedGoesStraightToLiked)
{
    ASSERT_FALSE(start(QStringLiteral("/deezer/rated")).hasError());
    ASSERT_TRUE(settle("Track r"));
    ASSERT_FALSE(command(TarnPlayLogicRoles::Dislike()).hasError());
    EXPECT_EQ(rating(), TarnRatingThreeStateValues::Negative);
    ASSERT_FALSE(command(TarnPlayLogicRoles::Like()).hasError());
    EXPECT_EQ(rating(), TarnRatingThreeStateValues::Positive);
    EXPECT_EQ(paths().filter(QStringLiteral("/rate/")),
              (QStringList{QStringLiteral("/rate/r/down"), QStringLiteral("/rate/r/up")}));
}

// The cloud refuses a like only once the next track plays: the liked track
// that plays now keeps its rating, and the client hears of the refusal.
TEST_F(ProgramEdges, aRatingRefusedAfterTheTrackChangedLeavesTheNewTrackAsItIs)
{
    HeldCalls held(cloud.get());
    ASSERT_FALSE(start(QStringLiteral("/deezer/late")).hasError());
    ASSERT_TRUE(settle("Track l"));
    auto const like = TarnClient::setData(logic(), TarnPlayLogicRoles::Like(), QVariant());
    ASSERT_TRUE(waitFor([&] { return held.arrived() == 1; }));
    EXPECT_EQ(rating(), TarnRatingThreeStateValues::Positive) << "shown at once";

    ASSERT_FALSE(command(TarnPlayLogicRoles::Next()).hasError());
    ASSERT_TRUE(settle("Track m"));
    ASSERT_EQ(rating(), TarnRatingThreeStateValues::Positive);
    held.release();
    ASSERT_TRUE(TarnClient::wait(like, kPatienceMs));
    EXPECT_EQ(like.error().messageText().toStdString(), "Rating is not possible now");
    EXPECT_EQ(rating(), TarnRatingThreeStateValues::Positive);
    EXPECT_EQ(playing(), "Track m");
}
