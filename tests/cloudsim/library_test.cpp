#include "cloudserver.h"
#include "device.h"

#include <QStringList>

#include <rapidjson/pointer.h>

#include <gtest/gtest.h>

namespace {

class Library : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
        ASSERT_TRUE(kitchen.authenticate());
        ASSERT_TRUE(hall.authenticate());
        for (char const* service : {"qobuz", "tidal"}) {
            cloud.logIn(kitchen.id(), service, "me@example.com");
            cloud.logIn(hall.id(), service, "me@example.com");
        }
    }

    std::string below(std::string const& url) const { return url.substr(cloud.baseUrl().size()); }

    static rapidjson::Value const& entries(Device::Reply const& r)
    {
        static rapidjson::Value const none(rapidjson::kArrayType);
        rapidjson::Value const* list = r.json.IsObject() ? rapidjson::Pointer("/content/entries").Get(r.json) : nullptr;
        return list && list->IsArray() ? *list : none;
    }

    static QStringList entryIds(Device::Reply const& r)
    {
        QStringList ids;
        for (auto const& e : entries(r).GetArray())
            ids << QString::fromUtf8(e["id"][2].GetString());
        return ids;
    }

    // An action of an item, by its word: the item is the answer itself or
    // one of its entries.
    static rapidjson::Value const* action(Device::Reply const& r, QString const& itemId, char const* word)
    {
        auto const find = [word](rapidjson::Value const& item) -> rapidjson::Value const* {
            if (!item.HasMember("actions"))
                return nullptr;
            for (auto const& a : item["actions"].GetArray()) {
                if (std::string(a["id"][2].GetString()) == word)
                    return &a;
            }
            return nullptr;
        };
        if (r.json.IsObject() && r.string("/id/2") == itemId.toStdString())
            return find(r.json);
        for (auto const& e : entries(r).GetArray()) {
            if (e["id"][2].GetString() == itemId.toStdString())
                return find(e);
        }
        return nullptr;
    }

    // "add" or "remove": which of the two favourite actions is active.
    static std::string activeFavourite(Device::Reply const& r, QString const& itemId)
    {
        rapidjson::Value const* add = action(r, itemId, "favorite.add");
        rapidjson::Value const* remove = action(r, itemId, "favorite.remove");
        if (!add || !remove)
            return "no favourite actions";
        bool const a = add->HasMember("active") && (*add)["active"].GetBool();
        bool const b = remove->HasMember("active") && (*remove)["active"].GetBool();
        return a && !b ? "add" : !a && b ? "remove" : "both or none";
    }

    std::string urlOf(Device::Reply const& r, QString const& itemId, char const* word) const
    {
        rapidjson::Value const* a = action(r, itemId, word);
        return a ? below((*a)["url"].GetString()) : std::string("/no-such-action");
    }

    cloudsim::CloudServer cloud;
    Device kitchen{cloud, "AA:00:00:00:00:01"};
    Device hall{cloud, "AA:00:00:00:00:02"};
};

TEST_F(Library, favouritesChangeWithTheirActionsWhoseActiveFlagsFollow)
{
    EXPECT_TRUE(entryIds(kitchen.get("/qobuz/favorites")).isEmpty());
    Device::Reply const album = kitchen.get("/qobuz/albums/qb-al1");
    EXPECT_EQ(activeFavourite(album, "qb-al1t1"), "remove") << "no favourite yet";

    Device::Reply const added = kitchen.get(urlOf(album, "qb-al1t1", "favorite.add"));
    EXPECT_EQ(added.string("/id/1") + "/" + added.string("/id/2"), "action/favorite.add");
    EXPECT_NE(added.string("/message").find("Aria"), std::string::npos) << added.body;
    kitchen.get(urlOf(album, "qb-al1", "favorite.add"));
    kitchen.get(urlOf(album, "qb-al1t1", "favorite.add"));
    EXPECT_EQ(entryIds(kitchen.get("/qobuz/favorites")), (QStringList{"qb-al1", "qb-al1t1"}))
        << "newest first, each once";

    EXPECT_EQ(activeFavourite(kitchen.get("/qobuz/albums/qb-al1"), "qb-al1t1"), "add");
    EXPECT_EQ(activeFavourite(kitchen.get("/qobuz/albums/qb-al1"), "qb-al1"), "add") << "the album itself";
    EXPECT_EQ(activeFavourite(kitchen.get("/qobuz/tracks/qb-al1t1"), "qb-al1t1"), "add");
    EXPECT_EQ(activeFavourite(kitchen.get("/qobuz/playlists/qobuz-pl1"), "qb-al1t1"), "add") << "wherever it's listed";
    EXPECT_EQ(activeFavourite(kitchen.get("/qobuz/favorites"), "qb-al1t1"), "add");
    EXPECT_EQ(activeFavourite(kitchen.get("/qobuz/albums/qb-al1"), "qb-al1t2"), "remove");

    Device::Reply const removed = kitchen.get(urlOf(album, "qb-al1t1", "favorite.remove"));
    EXPECT_EQ(removed.string("/id/2"), "favorite.remove");
    EXPECT_FALSE(removed.string("/message").empty());
    EXPECT_EQ(entryIds(kitchen.get("/qobuz/favorites")), QStringList{"qb-al1"});
    EXPECT_EQ(activeFavourite(kitchen.get("/qobuz/albums/qb-al1"), "qb-al1t1"), "remove");

    EXPECT_TRUE(kitchen.get("/qobuz/actions/favorite.add?track=nope").isErrorItem("notfound"));
}

TEST_F(Library, favouritesBelongToTheUserLoggedInOrElseToTheDevice)
{
    kitchen.get("/qobuz/actions/favorite.add?track=qb-al2t1");
    EXPECT_EQ(entryIds(hall.get("/qobuz/favorites")), QStringList{"qb-al2t1"}) << "the same user on another device";
    cloud.logIn(hall.id(), "qobuz", "premium@example.com");
    EXPECT_TRUE(entryIds(hall.get("/qobuz/favorites")).isEmpty()) << "another user";
    EXPECT_TRUE(entryIds(kitchen.get("/tidal/favorites")).isEmpty()) << "another service";

    kitchen.get("/airable/actions/favorite.add?radio=r1001");
    EXPECT_EQ(entryIds(kitchen.get("/airable/radios/favorites")), QStringList{"r1001"});
    EXPECT_TRUE(entryIds(hall.get("/airable/radios/favorites")).isEmpty()) << "radios are the device's own";
    EXPECT_EQ(activeFavourite(kitchen.get("/airable/radios/popular"), "r1001"), "add");
    EXPECT_EQ(activeFavourite(hall.get("/airable/radios/popular"), "r1001"), "remove");
}

TEST_F(Library, aTrackAddedToAChosenPlaylistIsInItAfterItsOwnTracks)
{
    Device::Reply const album = kitchen.get("/tidal/albums/td-al1");
    Device::Reply const choice = kitchen.get(urlOf(album, "td-al1t2", "playlist.insert"));
    EXPECT_EQ(choice.string("/id/1"), "listing");
    EXPECT_EQ(entryIds(choice), QStringList{"playlist.insert.tidal-pl1"});
    EXPECT_EQ(choice.string("/content/entries/0/id/1"), "action");
    EXPECT_EQ(choice.string("/content/entries/0/title"), "TIDAL Essentials");

    QStringList const before = entryIds(kitchen.get("/tidal/playlists/tidal-pl1"));
    ASSERT_FALSE(before.contains("td-al1t2"));
    std::string const insert = below(choice.string("/content/entries/0/url"));
    Device::Reply const done = kitchen.get(insert);
    EXPECT_EQ(done.string("/id/1"), "action");
    EXPECT_NE(done.string("/message").find("TIDAL Essentials"), std::string::npos) << done.body;

    Device::Reply const playlist = kitchen.get("/tidal/playlists/tidal-pl1");
    EXPECT_EQ(entryIds(playlist), QStringList(before) << "td-al1t2");
    EXPECT_TRUE(playlist.json["content"]["entries"][before.size()].HasMember("streams")) << "a track to play";
    EXPECT_EQ(entryIds(kitchen.get("/id/tidal/playlist/tidal-pl1")), entryIds(playlist));

    EXPECT_NE(kitchen.get(insert).string("/message").find("already"), std::string::npos);
    EXPECT_EQ(entryIds(kitchen.get("/tidal/playlists/tidal-pl1")).size(), before.size() + 1) << "once only";
    cloud.logIn(hall.id(), "tidal", "premium@example.com");
    EXPECT_EQ(entryIds(hall.get("/tidal/playlists/tidal-pl1")), before) << "another user's playlist";
    EXPECT_TRUE(kitchen.get("/tidal/actions/playlist.add?playlist=nope&track=td-al1t2").isErrorItem("notfound"));
}

// What a menu shows of an item in front of its actions: a description in
// the user's language, and the item's images.
TEST_F(Library, moreFromThisArtistOpensTheArtistWhoseDescriptionComesInTwoLanguages)
{
    Device::Reply const track = kitchen.get("/qobuz/tracks/qb-al2t2");
    Device::Reply const artist = kitchen.get(urlOf(track, "qb-al2t2", "artist"));
    EXPECT_EQ(artist.string("/id/1") + "/" + artist.string("/id/2"), "artist/qb-ar2");
    EXPECT_EQ(entryIds(artist), QStringList{"qb-al2"});
    EXPECT_EQ(activeFavourite(artist, "qb-ar2"), "remove");

    for (char const* path : {"/qobuz/tracks/qb-al2t2", "/qobuz/artists/qb-ar2", "/qobuz/albums/qb-al2",
                             "/qobuz/artists/qb-ar1", "/qobuz/tracks/qb-al1t1", "/tidal/albums/td-al1"}) {
        std::string const description = kitchen.get(path).string("/description");
        EXPECT_EQ(description.rfind("EN: ", 0), 0u) << path << ": " << description;
        EXPECT_NE(description.find("\r\nDE: "), std::string::npos) << path;
    }
    EXPECT_NE(artist.string("/images/2/url").find("/images/qb-ar2.svg"), std::string::npos);
    EXPECT_EQ(kitchen.get("/id/qobuz/track/qb-al2t2").string("/description"), track.string("/description"));
}

} // namespace
