#include "cloudserver.h"
#include "device.h"

#include <QSet>
#include <QStringList>

#include <rapidjson/pointer.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

class Catalogue : public ::testing::Test
{
protected:
    // Logged in everywhere, so that every service shows what lies behind
    // its login dialog.
    void SetUp() override
    {
        ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
        ASSERT_TRUE(device.authenticate());
        for (char const* service : {"deezer", "qobuz", "napster", "highresaudio", "tidal", "amazon"})
            cloud.logIn(device.id(), service, "me@example.com");
    }

    // A log-out ends the login that lets the catalogue show the rest, so
    // the log-outs come last.
    static QStringList logoutsLast(QStringList paths)
    {
        std::stable_partition(paths.begin(), paths.end(), [](QString const& p) { return !p.endsWith("/logout"); });
        return paths;
    }

    int entryCount(Device::Reply const& r) const
    {
        rapidjson::Value const* entries = rapidjson::Pointer("/content/entries").Get(r.json);
        return entries && entries->IsArray() ? static_cast<int>(entries->Size()) : -1;
    }

    int intAt(Device::Reply const& r, char const* pointer) const
    {
        rapidjson::Value const* v = rapidjson::Pointer(pointer).Get(r.json);
        return v && v->IsInt() ? v->GetInt() : -1;
    }

    cloudsim::CloudServer cloud;
    Device device{cloud};
};

void collectUrls(rapidjson::Value const& v, std::string const& base, QSet<QString>* urls)
{
    if (v.IsString()) {
        std::string const s(v.GetString(), v.GetStringLength());
        if (s.compare(0, base.size(), base) == 0)
            urls->insert(QString::fromStdString(s.substr(base.size())));
    } else if (v.IsObject()) {
        for (auto const& m : v.GetObject())
            collectUrls(m.value, base, urls);
    } else if (v.IsArray()) {
        for (auto const& e : v.GetArray())
            collectUrls(e, base, urls);
    }
}

// A link that leads nowhere would only show up as a dead row on a device.
TEST_F(Catalogue, everyLinkInsideTheCatalogueIsAnswered)
{
    std::string const base = cloud.baseUrl().toStdString();
    QSet<QString> urls;
    for (QString const& route : logoutsLast(cloud.routes())) {
        Device::Reply const r = device.get(route.toStdString());
        ASSERT_FALSE(r.isErrorItem("notfound")) << route.toStdString();
        if (r.json.IsObject())
            collectUrls(r.json, base, &urls);
    }
    EXPECT_GT(urls.size(), 100);
    for (QString const& url : logoutsLast(urls.values())) {
        Device::Reply const r = device.get(url.toStdString());
        EXPECT_TRUE(r.status == 200 || r.status == 204) << url.toStdString() << " " << r.status;
        EXPECT_FALSE(r.isErrorItem("notfound")) << url.toStdString();
        EXPECT_FALSE(r.isErrorItem("authentication")) << url.toStdString();
    }
}

void collectStreams(rapidjson::Value const& v, std::string const& base, QSet<QString>* streams)
{
    if (v.IsObject()) {
        auto const id = v.FindMember("id");
        auto const url = v.FindMember("url");
        if (id != v.MemberEnd() && id->value.IsArray() && id->value.Size() > 1 && id->value[1].IsString()
            && url != v.MemberEnd() && url->value.IsString()) {
            std::string const itype = id->value[1].GetString();
            std::string const link = url->value.GetString();
            if ((itype == "radio.stream" || itype == "feed.stream") && link.compare(0, base.size(), base) == 0)
                streams->insert(QString::fromStdString(link.substr(base.size())));
        }
        for (auto const& m : v.GetObject())
            collectStreams(m.value, base, streams);
    } else if (v.IsArray()) {
        for (auto const& e : v.GetArray())
            collectStreams(e, base, streams);
    }
}

// A stream that answers with anything but a redirect to media can't be
// played, however well its item browses; one without its events leaves the
// cloud in the dark.
TEST_F(Catalogue, everyStreamRedirectsToMediaOfItsOwn)
{
    std::string const base = cloud.baseUrl().toStdString();
    QSet<QString> streams;
    for (QString const& route : cloud.routes()) {
        if (!route.endsWith("/logout"))
            collectStreams(device.get(route.toStdString()).json, base, &streams);
    }
    EXPECT_GT(streams.size(), 300);
    QSet<QString> media;
    for (QString const& stream : qAsConst(streams)) {
        Device::Reply const r = device.get(stream.toStdString());
        EXPECT_EQ(r.string("/id/1"), "redirect") << stream.toStdString();
        std::string const url = r.string("/url");
        EXPECT_EQ(url.compare(0, base.size() + 7, base + "/media/"), 0) << stream.toStdString() << " " << url;
        media.insert(QString::fromStdString(url));
        // The cloud tells the events of one stream from those of another.
        for (char const* word : {"start", "pause", "stop", "error"}) {
            std::string const event = r.string((std::string("/events/") + word).c_str());
            EXPECT_NE(event.find("/events/" + std::string(word) + "?stream=" + r.string("/id/2")), std::string::npos)
                << stream.toStdString() << " " << event;
        }
    }
    EXPECT_EQ(media.size(), streams.size()) << "streams that share their media";
}

TEST_F(Catalogue, aTrackAndAnEpisodeListingAnswerAtTheirOwnUrls)
{
    Device::Reply const album = device.get("/qobuz/albums/qb-al1");
    std::string const trackUrl = album.string("/content/entries/0/url");
    EXPECT_EQ(trackUrl, cloud.baseUrl().toStdString() + "/qobuz/tracks/qb-al1t1");
    Device::Reply const track = device.get("/qobuz/tracks/qb-al1t1");
    EXPECT_EQ(track.string("/id/1"), "track");
    EXPECT_EQ(track.string("/id/2"), "qb-al1t1");
    EXPECT_EQ(track.string("/streams/2/url"), album.string("/content/entries/0/streams/2/url"));

    Device::Reply const feed = device.get("/airable/feeds/f301");
    EXPECT_EQ(feed.string("/content/entries/0/url"), cloud.baseUrl().toStdString() + "/airable/feeds/f301/episodes");
    Device::Reply const episodes = device.get("/airable/feeds/f301/episodes");
    EXPECT_EQ(episodes.string("/id/2"), "feed.f301.episodes");
    EXPECT_EQ(episodes.string("/content/entries/0/id/1"), "feed.episode");

    // A path of a file wins over an item that names it as its URL.
    EXPECT_EQ(device.get("/qobuz/albums/qb-al1").body, album.body);
}

TEST_F(Catalogue, coversComeInTheSizesTheirNamesSay)
{
    Device::Reply const large = device.getRaw("/images/am-al1.svg", nullptr);
    Device::Reply const small = device.getRaw("/images/am-al1-100.svg", nullptr);
    EXPECT_NE(large.body.find("width=\"600\""), std::string::npos) << large.body;
    EXPECT_NE(small.body.find("width=\"100\""), std::string::npos) << small.body;
    std::string const fill = large.body.substr(large.body.find("fill=\"#"), 14);
    EXPECT_NE(small.body.find(fill), std::string::npos) << "the same picture";
}

TEST_F(Catalogue, rootListsTheServicesWithAbsoluteUrls)
{
    Device::Reply const root = device.get("/");
    QStringList ids;
    for (auto const& entry : root.json["content"]["entries"].GetArray())
        ids << QString::fromUtf8(entry["id"][2].GetString());

    EXPECT_EQ(ids, QStringList({"airable.radios", "airable.feeds", "deezer", "qobuz", "tidal", "amazon", "napster",
                                "highresaudio"}));
    EXPECT_EQ(root.string("/content/entries/2/url"), cloud.baseUrl().toStdString() + "/deezer");
    EXPECT_EQ(device.get("/listing/index").body, root.body);
}

TEST_F(Catalogue, longListingIsServedInPagesWithAShortLastOne)
{
    Device::Reply const first = device.get("/airable/radios/all");
    EXPECT_EQ(entryCount(first), 25);
    EXPECT_EQ(intAt(first, "/content/collection/size"), 230);
    EXPECT_EQ(intAt(first, "/content/collection/limit"), 25);
    EXPECT_EQ(intAt(first, "/content/collection/offset"), 0);
    EXPECT_EQ(intAt(first, "/content/pagination/pages/current"), 1);
    EXPECT_EQ(first.string("/content/pagination/pages/replace"), ":value:");
    std::string const pageUrl = first.string("/content/pagination/pages/url");
    EXPECT_EQ(pageUrl, cloud.baseUrl().toStdString() + "/airable/radios/all?p=:value:");
    EXPECT_EQ(first.string("/content/pagination/next"), cloud.baseUrl().toStdString() + "/airable/radios/all?p=2");
    EXPECT_TRUE(first.string("/content/pagination/prev").empty());

    Device::Reply const last = device.get("/airable/radios/all?p=10");
    EXPECT_EQ(entryCount(last), 5);
    EXPECT_EQ(intAt(last, "/content/collection/offset"), 225);
    EXPECT_EQ(last.string("/content/entries/0/title"), device.get("/airable/radios/all?p=10").string("/content/entries/0/title"));
    EXPECT_TRUE(last.string("/content/pagination/next").empty());
    EXPECT_EQ(entryCount(device.get("/airable/radios/all?p=11")), 0);
}

TEST_F(Catalogue, itemsAreReachableByTheirIds)
{
    EXPECT_EQ(device.get("/id/airable/radio/r1001").string("/url"), cloud.baseUrl().toStdString() + "/airable/radios/r1001");
    EXPECT_EQ(device.get("/id/tidal/track/td-al1t1").string("/title"), "Prism");
    EXPECT_EQ(device.get("/id/deezer/form/login").string("/id/1"), "form");
    EXPECT_EQ(device.get("/id/airable/radio/g2229").string("/id/2"), "g2229");
    EXPECT_TRUE(device.get("/id/airable/radio/nope").isErrorItem("notfound"));
    EXPECT_EQ(device.get("/id/airable/radio/nope").status, 404);
}

TEST_F(Catalogue, playbackRedirectsCarryEventsAndEncryption)
{
    Device::Reply const radio = device.get("/airable/radios/r1003/streams/2");
    EXPECT_EQ(radio.string("/id/1"), "redirect");
    EXPECT_EQ(radio.string("/url"), cloud.baseUrl().toStdString() + "/media/r1003-64.aac");
    EXPECT_FALSE(radio.string("/events/stop").empty());

    Device::Reply const amazon = device.get("/amazon/streams/am-al1t1");
    EXPECT_EQ(amazon.string("/encryption/type"), "widevine");
    EXPECT_EQ(amazon.string("/encryption/headers/key/1"), "X-Licence-Token: c2ltdWxhdGVk");
    EXPECT_EQ(device.get("/amazon/streams/am-odd1").string("/encryption/type"), "playready");
    Device::Reply const open = device.get("/amazon/streams/am-al1t3/96");
    EXPECT_EQ(open.string("/id/1"), "redirect");
    EXPECT_FALSE(open.json.HasMember("encryption"));
    EXPECT_TRUE(device.get("/errors/empty-redirect").string("/url").empty());
}

TEST_F(Catalogue, resumeAnswersWithAndWithoutContent)
{
    Device::Reply const ok = device.get("/airable/resume/ok");
    EXPECT_EQ(ok.status, 200);
    EXPECT_TRUE(ok.body.empty());
    EXPECT_EQ(device.get("/airable/resume/nocontent").status, 204);
}

TEST(CatalogueLoading, reportsTheFileOfABrokenCatalogue)
{
    cloudsim::CloudOptions options;
    options.dataDirectory = "/nonexistent/cloudsim";
    cloudsim::CloudServer cloud(options);

    EXPECT_FALSE(cloud.start());
    EXPECT_TRUE(cloud.errorString().contains("/nonexistent/cloudsim"));
}

} // namespace
