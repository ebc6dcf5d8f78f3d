#include "sharedcloud.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QSet>

namespace {

QJsonObject trackOf(QJsonObject const& object)
{
    return object.value("track").toObject();
}

// Programs played through their play logic, and the player command acting
// on them, against the cloud's Deezer Flow.
class CliProgram : public SharedCloud
{
protected:
    // A shell logged in to Deezer as email, whose first command lists the
    // Deezer home: row 0 is Flow.
    HostRun shellOnDeezer(QString const& email, QByteArray const& commands) const
    {
        logIn("deezer", email);
        return host({"--json", "shell"}, "ls /deezer\n" + commands);
    }
};

} // namespace

TEST_F(CliProgram, aProgramPlaysItsTracksOneAfterTheOtherAndACommandStopsItAtItsEnd)
{
    logIn("deezer", "me@example.com");
    HostRun const run = host({"--json", "play", "/deezer/flow"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QJsonObject const played = run.objects().value(0);
    QJsonArray const tracks = played.value("tracks").toArray();
    ASSERT_EQ(tracks.size(), 3) << run.out.toStdString();
    QSet<QString> titles;
    QSet<QString> streams;
    for (auto const& t : tracks) {
        QJsonObject const track = t.toObject();
        titles << track.value("title").toString();
        streams << track.value("uri").toString();
        EXPECT_FALSE(track.value("artist").toString().isEmpty()) << run.out.toStdString();
        EXPECT_TRUE(track.value("uri").toString().startsWith(cloud->baseUrl() + "/media/")) << run.out.toStdString();
    }
    EXPECT_EQ(titles.size(), 3) << "three tracks, not one thrice";
    EXPECT_EQ(streams.size(), 3);
    EXPECT_EQ(played.value("state").toString(), "stopped") << "a single command leaves nothing playing";
    QStringList steps;
    for (auto const& s : played.value("steps").toArray())
        steps << s.toString();
    EXPECT_TRUE(steps.contains("stop by the user")) << steps.join('\n').toStdString();
}

TEST_F(CliProgram, eachTrackIsPrintedAsItStartsAndTracksSaysHowMany)
{
    logIn("deezer", "me@example.com");
    HostRun const run = host({"play", "/deezer/flow", "--tracks", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    auto const line = [&run](QString const& pattern) {
        return run.out.contains(QRegularExpression(pattern, QRegularExpression::MultilineOption));
    };
    EXPECT_TRUE(line("^1  \\S.* - \\S.*$")) << run.out.toStdString();
    EXPECT_TRUE(line("^   http://\\S+/media/\\S+$")) << run.out.toStdString();
    EXPECT_TRUE(line("^2  ")) << run.out.toStdString();
    EXPECT_FALSE(line("^3  ")) << run.out.toStdString();
    EXPECT_TRUE(line("^played 2 tracks of Flow$")) << run.out.toStdString();

    HostRun const none = host({"--json", "play", "/deezer/flow", "--tracks", "0"});
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_EQ(errorName(none.objects().value(0)), "usage");
}

TEST_F(CliProgram, aFreeAccountSkipsUpToItsLimitThenGetsTheOfferAndThePlayGoesOn)
{
    QByteArray const skips = QByteArray("player next\n").repeated(7);
    HostRun const run = shellOnDeezer("me@example.com", "play 0 --tracks 1\n" + skips + "player status\n");
    EXPECT_EQ(run.exitCode, 1) << "the refused skip";
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 10) << run.out.toStdString();

    QSet<QString> titles{out[1].value("tracks").toArray().first().toObject().value("title").toString()};
    for (int i = 2; i < 8; ++i) {
        EXPECT_EQ(out[i].value("command").toString(), "next") << run.out.toStdString();
        titles << trackOf(out[i]).value("title").toString();
    }
    EXPECT_EQ(titles.size(), 7) << "each of the six skips plays a new track";

    QJsonObject const refused = out[8].value("error").toObject();
    EXPECT_EQ(refused.value("name").toString(), "skipLimitReached") << run.out.toStdString();
    QJsonObject const offer = refused.value("offer").toObject();
    EXPECT_EQ(offer.value("title").toString(), "Subscribe");
    EXPECT_FALSE(offer.value("description").toString().isEmpty());
    EXPECT_EQ(offer.value("url").toString(), "https://signup.example/deezer");
    for (QString const part : {"Subscribe", "https://signup.example/deezer"})
        EXPECT_TRUE(refused.value("message").toString().contains(part)) << "a person reads the offer in the message";

    EXPECT_EQ(out[9].value("state").toString(), "playing");
    EXPECT_EQ(trackOf(out[9]).value("title").toString(), trackOf(out[7]).value("title").toString())
        << "the refused skip leaves the track playing";
}

TEST_F(CliProgram, aPremiumAccountHasNoSkipLimit)
{
    QByteArray const skips = QByteArray("player next\n").repeated(7);
    HostRun const run = shellOnDeezer("premium@example.com", "play 0 --tracks 1\n" + skips);
    ASSERT_EQ(run.exitCode, 0) << run.out.toStdString();
    EXPECT_EQ(run.objects().size(), 9);
}

TEST_F(CliProgram, likeTogglesTheRatingAndARefusedRatingLeavesItAsItWas)
{
    // The cloud refuses ratings of Flow's third track.
    HostRun const run = shellOnDeezer("me@example.com", "play 0\n"
                                                        "player like\n"
                                                        "player status\n"
                                                        "player next\n"
                                                        "player like\n"
                                                        "player status\n"
                                                        "player like\n");
    EXPECT_EQ(run.exitCode, 1) << "the refused rating";
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 8) << run.out.toStdString();

    EXPECT_FALSE(errorName(out[2]).isEmpty()) << run.out.toStdString();
    EXPECT_EQ(trackOf(out[3]).value("rating").toString(), "neutral") << "the refused rating is taken back";

    QJsonObject const liked = out[5];
    EXPECT_EQ(liked.value("reply").toObject().value("title").toString(), "Rating Message") << run.out.toStdString();
    EXPECT_FALSE(liked.value("reply").toObject().value("description").toString().isEmpty());
    EXPECT_EQ(liked.value("rating").toString(), "positive");
    EXPECT_EQ(trackOf(out[6]).value("rating").toString(), "positive");
    EXPECT_EQ(out[7].value("rating").toString(), "neutral") << "a second like takes the first back";
}

TEST_F(CliProgram, statusSaysWhatPlaysAndPauseGoesBackAndForth)
{
    HostRun const run = shellOnDeezer("me@example.com", "play 0 --tracks 2\n"
                                                        "player status\n"
                                                        "player pause\n"
                                                        "player status\n"
                                                        "player pause\n");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 6) << run.out.toStdString();

    QJsonObject const second = out[1].value("tracks").toArray().at(1).toObject();
    QJsonObject const status = out[2];
    EXPECT_EQ(status.value("state").toString(), "playing");
    EXPECT_EQ(trackOf(status).value("title").toString(), second.value("title").toString());
    EXPECT_EQ(trackOf(status).value("uri").toString(), second.value("uri").toString());
    EXPECT_EQ(status.value("path").toString(), "playlogic:airable/program");
    QStringList controls;
    for (auto const& c : status.value("controls").toArray())
        controls << c.toString();
    EXPECT_TRUE(controls.contains("next") && controls.contains("like")) << controls.join(' ').toStdString();

    EXPECT_EQ(out[3].value("state").toString(), "paused");
    EXPECT_EQ(out[4].value("state").toString(), "paused");
    EXPECT_EQ(out[5].value("state").toString(), "playing");
}

TEST_F(CliProgram, afterStopThePlayerHasNothingToActOn)
{
    HostRun const run = shellOnDeezer("me@example.com", "player next\nplay 0 --tracks 1\nplayer stop\nplayer status\n");
    EXPECT_EQ(run.exitCode, 1);
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 5) << run.out.toStdString();
    EXPECT_EQ(errorName(out[1]), "notPlaying");
    EXPECT_EQ(out[3].value("state").toString(), "stopped");
    EXPECT_EQ(errorName(out[4]), "notPlaying");
}

TEST_F(CliProgram, previousGoesBackToTheTrackBeforeOrToTheStartOfTheFirst)
{
    logIn("amazon", "me@example.com");
    HostRun const run = host({"--json", "shell"}, "ls /amazon\nplay 0 --tracks 2\nplayer previous\nplayer previous\n");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 4) << run.out.toStdString();
    ASSERT_EQ(titlesOf(out[0]).value(0), "Chill Station") << run.out.toStdString();
    QJsonArray const played = out[1].value("tracks").toArray();
    ASSERT_EQ(played.size(), 2);
    EXPECT_EQ(trackOf(out[2]).value("title").toString(), played.at(0).toObject().value("title").toString())
        << run.out.toStdString();
    EXPECT_FALSE(out[2].value("restarted").toBool());
    EXPECT_TRUE(out[3].value("restarted").toBool()) << "nothing before the first track: " << run.out.toStdString();
}
