#include "browse_fixture.h"
#include "cb_airable.h"
#include "patience.h"

#include <QDataStream>

TEST(ContextBlob, writtenActionsReadBackTheSame)
{
    QList<CMAirableWorker::ContextAction> const actions{
        {QStringLiteral("Add to playlist"), QStringLiteral("http://c/a?x=1"), QStringLiteral("airable://deezer/action/playlist.insert"), true, true},
        {QString(), QStringLiteral("ünïcode"), QString(), false, false},
    };
    QByteArray const blob = CMAirableWorker::writeContextActions(actions);
    auto const back = CMAirableWorker::readContextActions(QByteArray::fromBase64(blob.toBase64()));
    ASSERT_EQ(back.size(), 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(back[i].title, actions[i].title);
        EXPECT_EQ(back[i].url, actions[i].url);
        EXPECT_EQ(back[i].id, actions[i].id);
        EXPECT_EQ(back[i].opensContext, actions[i].opensContext);
        EXPECT_EQ(back[i].active, actions[i].active);
    }
    // The stream form: a 32-bit byte count and UTF-16 big-endian text, one
    // byte per bool; a null string counts 0xFFFFFFFF.
    EXPECT_EQ(blob.left(4), QByteArray::fromHex("0000001e"));
    EXPECT_TRUE(CMAirableWorker::readContextActions(QByteArray()).isEmpty());
}

TEST(ContextBlob, isByteForByteWhatADataStreamWrites)
{
    QList<CMAirableWorker::ContextAction> const actions{
        {QStringLiteral("Add"), QStringLiteral("http://c/a"), QStringLiteral("airable://q/action/x"), false, true},
        {QString(), QStringLiteral(""), QStringLiteral("\U0001F3B5 ünï"), true, false},
        {QStringLiteral("\xFFFF"), QString(), QString(), true, true},
    };
    QByteArray expected;
    QDataStream out(&expected, QIODevice::WriteOnly);
    for (auto const& a : actions)
        out << a.title << a.url << a.id << a.opensContext << a.active;
    EXPECT_EQ(CMAirableWorker::writeContextActions(actions).toHex(), expected.toHex());
    EXPECT_TRUE(CMAirableWorker::writeContextActions({}).isEmpty());
}

class BrowseRows : public Browse
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/album": {"id": ["qobuz", "listing", "a1"], "title": "Album", "content": {"entries": [
    {"id": ["qobuz", "track", "t1"], "title": "No URL"},
    {"id": ["qobuz", "track", "t2"], "title": "Covered", "url": "{base}/t/2",
     "images": [{"url": "{base}/i/small.png"}, {"url": "{base}/i/medium.png"}, {"url": "{base}/i/large.png"}],
     "actions": [
       {"id": ["qobuz", "action", "playlist.insert"], "title": "Add to playlist", "url": "{base}/act/1"},
       {"id": ["qobuz", "action", "favorite.add"], "title": "Like", "url": "{base}/act/2", "active": true}]},
    {"id": ["qobuz", "directory", "logout"], "title": "Log out", "url": "{base}/qobuz/logout"}
  ]}},
  "/radio": {"id": ["airable", "radio", "r1"], "title": "Radio One", "url": "{base}/radio",
    "streams": [{"id": ["airable", "radio.stream", "r1-1"], "url": "{base}/st/1", "codec": {"name": "mp3", "bitrate": 128}}],
    "content": {"entries": [{"id": ["airable", "radio", "r2"], "title": "Radio Two", "url": "{base}/r2"}]}},
  "/emptyradio": {"id": ["airable", "radio", "r3"], "title": "Lonely", "url": "{base}/emptyradio"},
  "/bilingual": {"id": ["airable", "listing", "b"], "title": "Both", "url": "{base}/bilingual",
    "description": "EN: English text\r\nDE: Deutscher Text", "content": {"entries": []}}
})";
    }
};

TEST_F(BrowseRows, rowsDescribeTracksImagesActionsAndLogout)
{
    QStringList const roles{TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Path(), TarnRoles::Icon(),
                            TarnRoles::Disabled(), TarnRoles::Context(), TarnRoles::ContainerType()};
    TarnRowsRoles const album = rows(at(QStringLiteral("/album")), 0, 9, roles);
    ASSERT_TRUE(lastError.isEmpty()) << lastError.messageText().toStdString();
    ASSERT_EQ(album.rows().size(), 3);

    QVariantList const noUrl = album.rows().at(0).toList();
    EXPECT_TRUE(noUrl.at(4).toBool());
    EXPECT_EQ(noUrl.at(2).toString(), worker->prefixPath().toEncoded());
    EXPECT_FALSE(noUrl.at(5).isValid());

    QVariantList const covered = album.rows().at(1).toList();
    EXPECT_FALSE(covered.at(4).toBool());
    EXPECT_EQ(covered.at(3).toString(), cloud->baseUrl() + QStringLiteral("/i/large.png"));
    CMPath const context = TarnRoles(covered.at(5).toHash()).path();
    QString rest;
    ASSERT_TRUE(context.startsWith(worker->addPrefix(TarnAirablePrefixContext() + QLatin1Char(':')), &rest));
    auto const actions = CMAirableWorker::readContextActions(QByteArray::fromBase64(rest.toLatin1()));
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions[0].id, QStringLiteral("airable://qobuz/action/playlist.insert"));
    EXPECT_TRUE(actions[0].opensContext);
    EXPECT_FALSE(actions[1].opensContext);
    EXPECT_TRUE(actions[1].active);

    QVariantList const logout = album.rows().at(2).toList();
    EXPECT_EQ(logout.at(1).toString(), TarnRolesType::Action());
    EXPECT_EQ(logout.at(2).toString(),
              worker->addPrefix(QStringLiteral("logout:qobuz:") + cloud->baseUrl() + QStringLiteral("/qobuz/logout"))
                  .toEncoded());
    EXPECT_EQ(album.roles().value(TarnRoles::ContainerType()).toInt(), 0);
}

TEST_F(BrowseRows, radioListingHasItsOwnRowFirst)
{
    QStringList const roles{TarnRoles::Title(), TarnRoles::AudioType(), TarnRoles::Type()};
    TarnRowsRoles const radio = rows(at(QStringLiteral("/radio")), 0, 9, roles);
    ASSERT_EQ(radio.rowsCount(), 2);
    EXPECT_EQ(text(radio.rows().at(0).toList().at(0)), QStringLiteral("Radio One"));
    EXPECT_EQ(radio.rows().at(0).toList().at(1).toString(), TarnRolesAudioType::AudioBroadcast());
    EXPECT_EQ(text(radio.rows().at(1).toList().at(0)), QStringLiteral("Radio Two"));

    TarnRowsRoles const lonely = rows(at(QStringLiteral("/emptyradio")), 0, 9, roles);
    EXPECT_EQ(lonely.rowsCount(), 1);
    EXPECT_EQ(text(lonely.rows().at(0).toList().at(0)), QStringLiteral("Lonely"));
}

TEST_F(BrowseRows, dataRequestOnAnItemAnswersItsRowAsAContainer)
{
    auto reply = TarnClient::data(at(QStringLiteral("/radio")), {TarnRoles::Title(), TarnRoles::Type()});
    ASSERT_TRUE(TarnClient::wait(reply, kPatienceMs));
    ASSERT_FALSE(reply.hasError()) << reply.error().messageText().toStdString();
    EXPECT_EQ(text(reply.value().at(0)), QStringLiteral("Radio One"));
    EXPECT_EQ(reply.value().at(1).toString(), TarnRolesType::Container());
}

TEST_F(BrowseRows, listingDescriptionIsShownInTheLanguageOfTheDeviceOrInEnglish)
{
    auto description = [](TarnRowsRoles const& listing) {
        return text(listing.roles().value(TarnRoles::Description())).toStdString();
    };
    auto* root = CMRootWorker::instance();
    root->putValue(TarnUILanguagePath(), TarnValue().setString_(QStringLiteral("de_DE")));
    EXPECT_EQ(description(rows(at(QStringLiteral("/bilingual")), 0, 9)),
              "Deutscher Text");
    root->putValue(TarnUILanguagePath(), TarnValue().setString_(QStringLiteral("fr_FR")));
    EXPECT_EQ(description(rows(at(QStringLiteral("/bilingual")), 0, 9)),
              "English text");
}
