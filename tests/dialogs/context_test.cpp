#include "dialogs_fixture.h"

#include "cmroot.h"

class Context : public Dialogs
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/album": {"id": ["qobuz", "album", "al"], "title": "Estuary", "url": "{base}/album",
    "description": "EN: A quiet record.\r\nDE: Eine leise Platte.",
    "images": [{"url": "{base}/images/al-100.png"}, {"url": "{base}/images/al.png"}],
    "actions": [
      {"id": ["qobuz", "action", "favorite.add"], "title": "Add to favourites", "url": "{base}/fav?id=al&r=1"},
      {"id": ["qobuz", "action", "playlist.insert"], "title": "Add to playlist", "url": "{base}/playlists?add=al"}],
    "content": {"entries": [
      {"id": ["qobuz", "track", "t1"], "title": "Low Water", "url": "{base}/t1",
       "actions": [
         {"id": ["qobuz", "action", "playlist.insert"], "title": "Add to playlist", "url": "{base}/playlists?add=t1"},
         {"id": ["qobuz", "action", "favorite.add"], "title": "Like", "url": "{base}/fav?id=t1", "active": true}]}]}},
  "/tidal/album": {"id": ["tidal", "album", "ta"], "title": "Other", "url": "{base}/tidal/album",
    "description": "Just one language", "content": {"entries": []}},
  "/fav": {"id": ["qobuz", "action", "favorite.add"], "message": "Added to your favourites"}
})";
    }

    static QStringList roles()
    {
        return {TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Path(), TarnRoles::Description(),
                TarnRoles::Preferred()};
    }

    TarnRowsRoles menu(CMPath const& path)
    {
        auto reply = TarnClient::rows(path, 0, 49, roles());
        EXPECT_TRUE(TarnClient::wait(reply, kPatienceMs));
        EXPECT_FALSE(reply.hasError()) << reply.error().messageText().toStdString();
        return reply.value();
    }

    QVariantList menuRow(TarnRowsRoles const& rows, int i) { return rows.rows().value(i).toList(); }
};

TEST_F(Context, aRowsPackedMenuNeedsNoCloudCallAndPlaylistInsertOpensAList)
{
    auto reply = TarnClient::rows(at(QStringLiteral("/album")), 0, 9, {TarnRoles::Context()});
    ASSERT_TRUE(TarnClient::wait(reply, kPatienceMs));
    CMPath const context = TarnRoles(reply.value().rows().value(0).toList().value(0).toHash()).path();
    cloud->clearLog();

    TarnRowsRoles const rows = menu(context);
    EXPECT_TRUE(paths().isEmpty());
    ASSERT_EQ(rows.rowsCount(), 2);
    EXPECT_EQ(text(rows.roles().title()), "Actions");
    EXPECT_EQ(menuRow(rows, 0).value(1), QVariant(TarnRolesType::Container()));
    EXPECT_EQ(menuRow(rows, 0).value(2).toString(), at(QStringLiteral("/playlists?add=t1")).toEncoded());
    EXPECT_EQ(menuRow(rows, 1).value(1), QVariant(TarnRolesType::Action()));
    EXPECT_EQ(menuRow(rows, 1).value(2).toString(),
              worker->addPrefix(QStringLiteral("action:") + cloud->baseUrl() + QStringLiteral("/fav?id=t1")).toEncoded());
    EXPECT_TRUE(menuRow(rows, 1).value(4).toBool());

    auto const window = TarnClient::rows(context, 1, 100, roles());
    ASSERT_TRUE(TarnClient::wait(window, kPatienceMs));
    EXPECT_EQ(window.value().rows().size(), 1);
}

TEST_F(Context, contentContextShowsTheInformationBlockInTheUsersLanguage)
{
    CMPath const context = worker->addPrefix(QStringLiteral("listcontext:") + cloud->baseUrl() + QStringLiteral("/album"));
    auto* root = CMRootWorker::instance();
    root->putValue(TarnUILanguagePath(), TarnValue().setString_(QStringLiteral("de_DE")));
    TarnRowsRoles german = menu(context);
    ASSERT_EQ(german.rowsCount(), 4) << "picture, heading, two actions";
    EXPECT_FALSE(german.roles().__contains(TarnRoles::Title())) << "an information block replaces the title";
    EXPECT_EQ(text(menuRow(german, 0).value(0)), "Estuary");
    EXPECT_EQ(text(menuRow(german, 1).value(0)), "ALBUM INFO");
    EXPECT_EQ(text(menuRow(german, 1).value(3)), "Eine leise Platte.");
    EXPECT_EQ(menuRow(german, 2).value(2).toString(),
              worker->addPrefix(QStringLiteral("action:") + cloud->baseUrl() + QStringLiteral("/fav?id=al")).toEncoded())
        << "the cloud's return marker is dropped";

    root->putValue(TarnUILanguagePath(), TarnValue().setString_(QStringLiteral("fr_FR")));
    EXPECT_EQ(text(menuRow(menu(context), 1).value(3)), "A quiet record.");

    TarnRowsRoles const other = menu(worker->addPrefix(QStringLiteral("listcontext:") + cloud->baseUrl()
                                                       + QStringLiteral("/tidal/album")));
    ASSERT_EQ(other.rowsCount(), 1) << "another service's description stands alone";
    EXPECT_EQ(text(menuRow(other, 0).value(3)), "Just one language");
}

TEST_F(Context, anActionsMessageIsADialogOfItsOwnThatGoesWhenUnused)
{
    CMPath const action = worker->addPrefix(QStringLiteral("action:") + cloud->baseUrl() + QStringLiteral("/fav?id=t1"));
    TarnActionReply const first(press(action).value().toHash());
    TarnActionReply const second(press(action).value().toHash());
    CMPath const dialog = first.result().path();
    ASSERT_TRUE(dialog.startsWith(worker->addPrefix(TarnAirablePrefixActionDialog()))) << dialog.toEncoded().toStdString();
    EXPECT_NE(dialog, second.result().path());
    EXPECT_EQ(text(row(listing(dialog), 0).title()), "Added to your favourites");

    // Nobody looks at it: it goes after its ten seconds unused.
    waitFor([] { return false; }, 10500);
    listing(dialog);
    EXPECT_EQ(lastError.name(), QStringLiteral("notFound"));
}
