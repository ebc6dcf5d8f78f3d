#include "play_fixture.h"

#include "tarnactionreply.h"

#include <QDataStream>

namespace {

CMPath prePlayOf(CMAirableWorker* worker, QString const& stype, QString const& itype, QString const& id)
{
    return worker->addPrefix(QStringLiteral("preplay?serviceType=%1&dataType=%2&objectId=%3").arg(stype, itype, id));
}

} // namespace

class RedirectCatalogue : public Play
{
protected:
    CMReply<QVariant> playById(QString const& stype, QString const& id)
    {
        CMPath const prePlay = prePlayOf(worker, stype, QStringLiteral("track"), id);
        return set(prePlay, TarnRoles().setPath(prePlay).__variant());
    }
};

TEST_F(RedirectCatalogue, aPrePlayQueryAloneFetchesTheItemThenItsStreamWithAmazonKeys)
{
    auto const reply = playById(QStringLiteral("amazon"), QStringLiteral("am-al1t1"));
    ASSERT_FALSE(reply.hasError()) << reply.error().messageText().toStdString();
    EXPECT_EQ(paths(), (QStringList{QStringLiteral("/id/amazon/track/am-al1t1"), QStringLiteral("/amazon/streams/am-al1t1")}));

    TarnRoles const roles(reply.value().toHash());
    TarnResource const active = roles.mediaData().activeResource();
    EXPECT_EQ(active.uri(), cloud->baseUrl() + QStringLiteral("/media/am-al1t1.flac"));
    EXPECT_EQ(active.uid(), QStringLiteral("0"));
    QVariantHash const amazon = active.cryptoData().toHash().value(QStringLiteral("amazonMusic")).toHash();
    EXPECT_EQ(active.cryptoData().toHash().size(), 1);
    EXPECT_EQ(amazon.value(QStringLiteral("key-headers")).toStringList(),
              (QStringList{QStringLiteral("X-Licence-Device: cloudsim-device"),
                           QStringLiteral("X-Licence-Token: c2ltdWxhdGVk")}));
    EXPECT_EQ(roles.value(TarnRoles::Icon()).toString(), cloud->baseUrl() + QStringLiteral("/images/am-al1.svg"));
    EXPECT_EQ(roles.mediaData().metaData().album(), QStringLiteral("Sunday Papers")) << "the fetched item's roles";
}

TEST_F(RedirectCatalogue, onlyAmazonMusicRefusesAnEncryptionItCannotHandle)
{
    LogCapture log;
    TarnRoles odd;
    odd.setMediaData(TarnMediaData().setResources(
        {TarnResource().setData(cloud->baseUrl() + QStringLiteral("/amazon/streams/am-odd1")).__variant()}));
    auto const refused = set(prePlayOf(worker, QStringLiteral("amazon"), QStringLiteral("track"), QStringLiteral("am-odd1")),
                             odd.__variant());
    EXPECT_EQ(refused.error().name(), QStringLiteral("Error"));
    EXPECT_EQ(refused.error().messageText(), QStringLiteral("Unsupported encryption type"));
    EXPECT_TRUE(log.contains(QStringLiteral("Item has unsupported encryption type: playready")));

    auto const tidal = playById(QStringLiteral("tidal"), QStringLiteral("td-al1t1"));
    ASSERT_FALSE(tidal.hasError()) << tidal.error().messageText().toStdString();
    TarnResource const active = TarnRoles(tidal.value().toHash()).mediaData().activeResource();
    EXPECT_EQ(active.uri(), cloud->baseUrl() + QStringLiteral("/media/td-al1t1.flac"));
    EXPECT_FALSE(active.cryptoData().isValid());
}

class RedirectDocs : public Play
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/items": {"id": ["qobuz", "listing", "items"], "content": {"entries": [
    {"id": ["qobuz", "form", "login"], "title": "Log in first"},
    {"id": ["qobuz", "track", "gone"], "title": "No streams member"}
  ]}},
  "/st/1": {"id": ["qobuz", "redirect", "s1"], "url": "{base}/media/one.mp3",
            "events": {"start": "{base}/ev/start", "stop": "{base}/ev/stop"}},
  "/st/2": {"id": ["qobuz", "redirect", "s2"], "url": "{base}/media/two.mp3"},
  "/st/empty": {"id": ["qobuz", "redirect", "empty"], "url": "", "events": {"error": "{base}/ev/error"}},
  "/st/pause": {"id": ["qobuz", "error", "p"], "message": "Paused by the cloud", "reaction": ["pause"]},
  "/st/message": {"id": ["qobuz", "error", "m"], "message": "Not in your country"},
  "/st/listing": {"id": ["qobuz", "listing", "x"], "title": "Not a redirect"}
})";
    }

    // An item's roles with one resource per stream path, as a row carries them.
    TarnRoles direct(QStringList const& streams, QString const& itemPath = QStringLiteral("/track"))
    {
        QVariantList resources;
        for (int i = 0; i < streams.size(); ++i)
            resources << TarnResource().setData(cloud->baseUrl() + streams[i]).setUid(QString::number(i)).__variant();
        TarnRoles roles;
        roles.setPath(at(itemPath));
        roles.setMediaData(TarnMediaData().setResources(resources));
        return roles;
    }

    CMPath prePlay() const { return prePlayOf(worker, QStringLiteral("qobuz"), QStringLiteral("track"), QStringLiteral("t")); }
};

TEST_F(RedirectDocs, theActiveResourceIsAskedAndGetsTheUriAndTheEventsAreKept)
{
    TarnRoles roles = direct({QStringLiteral("/st/2"), QStringLiteral("/st/1")});
    TarnMediaData media = roles.mediaData();
    roles.setMediaData(media.setActiveResource(TarnResource(media.resources().at(1).toHash())));
    auto const reply = set(prePlay(), roles.__variant());
    ASSERT_FALSE(reply.hasError()) << reply.error().messageText().toStdString();
    EXPECT_EQ(paths(), QStringList{QStringLiteral("/st/1")});
    TarnResource const active = TarnRoles(reply.value().toHash()).mediaData().activeResource();
    EXPECT_EQ(active.uid(), QStringLiteral("1"));
    EXPECT_EQ(active.uri(), cloud->baseUrl() + QStringLiteral("/media/one.mp3"));

    auto const records = probe->eventRecords();
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0].path, at(QStringLiteral("/track")));
    EXPECT_EQ(records[0].urls.value(QStringLiteral("stop")), cloud->baseUrl() + QStringLiteral("/ev/stop"));
    EXPECT_EQ(records[0].urls.size(), 2);
}

TEST_F(RedirectDocs, prePlayDataIsUnpackedIntoResourcesWhenTheRowHasNone)
{
    QByteArray packed;
    QDataStream out(&packed, QIODevice::WriteOnly);
    out << qint32(2) << cloud->baseUrl() + QStringLiteral("/st/2") << cloud->baseUrl() + QStringLiteral("/st/1");
    TarnRoles roles;
    roles.setMediaData(TarnMediaData().setMetaData(TarnMetaData().setPrePlayData(QString::fromLatin1(packed.toBase64()))));

    auto const reply = set(prePlay(), roles.__variant());
    ASSERT_FALSE(reply.hasError()) << reply.error().messageText().toStdString();
    EXPECT_EQ(paths(), QStringList{QStringLiteral("/st/2")});
    TarnMediaData const media = TarnRoles(reply.value().toHash()).mediaData();
    ASSERT_EQ(media.resources().size(), 2);
    TarnResource const second(media.resources().at(1).toHash());
    EXPECT_EQ(second.uid(), QStringLiteral("1"));
    EXPECT_EQ(second.mimeType(), MimeTypes::Audio::unknown());
    EXPECT_EQ(media.activeResource().uri(), cloud->baseUrl() + QStringLiteral("/media/two.mp3"));
    EXPECT_TRUE(probe->eventRecords().isEmpty()) << "no events, no record";
}

// The count in front is the sender's word only: a count far beyond the
// data, or a string cut in the middle, gives what the data holds.
TEST(PrePlayData, aCountBeyondTheDataGivesOnlyWhatTheDataHolds)
{
    QByteArray packed;
    QDataStream out(&packed, QIODevice::WriteOnly);
    out << qint32(0x7fffffff) << QStringLiteral("http://c/st/1");
    EXPECT_EQ(CMAirableWorker::unpackPrePlayData(QString::fromLatin1(packed.toBase64())),
              QStringList{QStringLiteral("http://c/st/1")});

    QByteArray corrupt;
    QDataStream odd(&corrupt, QIODevice::WriteOnly);
    odd << qint32(0x7fffffff) << quint32(3);
    corrupt.append("abc");
    EXPECT_EQ(CMAirableWorker::unpackPrePlayData(QString::fromLatin1(corrupt.toBase64())).size(), 1);
}

TEST_F(RedirectDocs, failedResolutionsAnswerWithTheirOwnTexts)
{
    struct Case
    {
        QString stream;
        QString name;
        QString message;
    };
    Case const cases[] = {
        {QStringLiteral("/st/empty"), QStringLiteral("Error"), QStringLiteral("Playback Url is empty")},
        {QStringLiteral("/st/message"), QStringLiteral("Error"), QStringLiteral("Not in your country")},
        {QStringLiteral("/st/listing"), CMError::DefaultName(), QStringLiteral("Can't retrieve track from server")},
    };
    for (auto const& c : cases) {
        auto const reply = set(prePlay(), direct({c.stream}).__variant());
        EXPECT_EQ(reply.error().name(), c.name) << c.stream.toStdString();
        EXPECT_EQ(reply.error().messageText(), c.message) << c.stream.toStdString();
    }
    // The record of the empty redirect stays, error or not.
    ASSERT_EQ(probe->eventRecords().size(), 1);
    EXPECT_TRUE(probe->eventRecords()[0].urls.contains(QStringLiteral("error")));

    auto const missing = set(worker->addPrefix(QStringLiteral("preplay?serviceType=qobuz&objectId=t")), QVariant());
    EXPECT_EQ(missing.error().messageText(), QStringLiteral("Internal error, missing serviceType, dataType or objectId"));
}

TEST_F(RedirectDocs, aReactionInsteadOfARedirectClosesTheView)
{
    LogCapture log;
    auto const reply = set(prePlay(), direct({QStringLiteral("/st/pause")}).__variant());
    ASSERT_FALSE(reply.hasError());
    TarnActionReply const answer(reply.value().toHash());
    ASSERT_EQ(answer.events().size(), 1);
    EXPECT_EQ(answer.events()[0].rowsType(), int(TarnEventRowsType::Close));
    EXPECT_TRUE(log.contains(QStringLiteral("Reacting to received error: Paused by the cloud")));
    EXPECT_TRUE(log.contains(QStringLiteral("Reaction to perform: PAUSE")));
}

TEST_F(RedirectDocs, theItemFetchedByIdMustBeAPlayableItem)
{
    struct Case
    {
        QString itype;
        QString id;
        QString message;
    };
    Case const cases[] = {
        {QStringLiteral("form"), QStringLiteral("login"), QStringLiteral("We are not logged in service or something")},
        {QStringLiteral("track"), QStringLiteral("gone"), QStringLiteral("Can't retrive track from server")},
    };
    for (auto const& c : cases) {
        auto const reply = set(prePlayOf(worker, QStringLiteral("qobuz"), c.itype, c.id), QVariant());
        EXPECT_EQ(reply.error().name(), CMError::DefaultName());
        EXPECT_EQ(reply.error().messageText(), c.message) << c.itype.toStdString();
    }
    EXPECT_EQ(paths(), (QStringList{QStringLiteral("/id/qobuz/form/login"), QStringLiteral("/id/qobuz/track/gone")}));
}
