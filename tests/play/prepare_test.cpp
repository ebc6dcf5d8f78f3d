#include "play_fixture.h"

#include "tarnplaylistitem.h"

#include <QJsonDocument>
#include <QJsonObject>

class Prepare : public Play
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/things": {"id": ["qobuz", "listing", "things"], "content": {"entries": [
    {"id": ["qobuz", "track", "t1"], "title": "First", "duration": 61, "url": "{base}/t1",
     "artist": {"id": ["qobuz", "artist", "a"], "title": "Ann"}, "album": {"id": ["qobuz", "album", "b"], "title": "Book"},
     "streams": [{"id": ["qobuz", "radio.stream", "t1"], "url": "{base}/s/t1", "codec": {"name": "mp3", "bitrate": 128}}]},
    {"id": ["qobuz", "track", "t2"], "title": "Second",
     "streams": [{"id": ["qobuz", "radio.stream", "t2"], "url": "{base}/s/t2", "codec": {"name": "mp3", "bitrate": 128}}]},
    {"id": ["qobuz", "album", "al"], "title": "A container"},
    {"id": ["qobuz", "error", "e1"], "message": "Gone for good"}
  ]}},
  "/resume/ok": {"@status": 200, "@body": ""},
  "/resume/nocontent": {"@status": 204, "@body": ""}
})";
    }

    CMReply<QVariant> prepare(QStringList const& ids)
    {
        QStringList encoded;
        for (auto const& id : ids)
            encoded << worker->addPrefix(QStringLiteral("/qobuz/") + id).toEncoded();
        return set(TarnAirablePreparePlaylistItemsPath(), encoded);
    }

    static QStringList titles(QVariant const& answer)
    {
        QStringList out;
        for (auto const& item : answer.toList())
            out << TarnPlayListItem(item.toHash()).title();
        return out;
    }
};

TEST_F(Prepare, aBatchAnswersOnceWithItsTracksAndSkipsWhatIsNoTrack)
{
    LogCapture log;
    auto const reply = prepare({QStringLiteral("track/t1"), QStringLiteral("album/al"), QStringLiteral("track/t2")});
    ASSERT_FALSE(reply.hasError()) << reply.error().messageText().toStdString();
    EXPECT_EQ(titles(reply.value()), (QStringList{QStringLiteral("First"), QStringLiteral("Second")}));
    EXPECT_EQ(log.count(QStringLiteral("Server didn't returned track")), 1);
    EXPECT_EQ(paths(), (QStringList{QStringLiteral("/id/qobuz/track/t1"), QStringLiteral("/id/qobuz/album/al"),
                                    QStringLiteral("/id/qobuz/track/t2")}));

    TarnPlayListItem const first(reply.value().toList().at(0).toHash());
    EXPECT_EQ(first.album(), QStringLiteral("Book"));
    EXPECT_EQ(first.artist(), QStringLiteral("Ann"));
    EXPECT_EQ(first.durationSeconds(), 61);
    EXPECT_EQ(first.url(), cloud->baseUrl() + QStringLiteral("/t1"));
    QJsonObject const roles = QJsonDocument::fromJson(first.tarnRoles().toUtf8()).object();
    EXPECT_EQ(roles.value(TarnRoles::Type()).toString(), TarnRolesType::Audio());
    EXPECT_TRUE(roles.value(TarnRoles::MediaData()).isObject());
}

TEST_F(Prepare, anErrorStopsTheBatchAndWhatIsLeftGoesWithTheNextOne)
{
    auto const failed = prepare({QStringLiteral("error/e1"), QStringLiteral("track/t1")});
    EXPECT_EQ(failed.error().name(), QStringLiteral("Error"));
    EXPECT_EQ(failed.error().messageText(), QStringLiteral("Gone for good"));
    EXPECT_EQ(probe->pathsToPrepare(), 1);

    auto const next = prepare({QStringLiteral("track/t2")});
    EXPECT_EQ(titles(next.value()), (QStringList{QStringLiteral("First"), QStringLiteral("Second")}));
    EXPECT_EQ(probe->pathsToPrepare(), 0);
}

TEST_F(Prepare, resumeLetsThePlayerGoOnOnlyAfterA200)
{
    CountingPlayer player;
    auto resume = [this](QString const& path) {
        CMSetDataRequest const request(worker->addPrefix(QStringLiteral("message1")), TarnRoles::Activate(), QVariant());
        TarnUrl const url(cloud->baseUrl() + path);
        probe->onWorker([request, url](CMAirableWorker* w) { w->resumePausedPlayback(url, request); });
        EXPECT_TRUE(TarnClient::wait(request.reply(), kPatienceMs));
        return request.reply();
    };
    auto const ok = resume(QStringLiteral("/resume/ok"));
    EXPECT_FALSE(ok.hasError()) << ok.error().messageText().toStdString();
    EXPECT_EQ(player.pauses, 1);

    auto const refused = resume(QStringLiteral("/resume/nocontent"));
    EXPECT_EQ(refused.error().messageText(), QStringLiteral("Failed to resume playback!"));
    EXPECT_EQ(player.pauses, 1);
}
