#include "cloudserver.h"
#include "device.h"

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <rapidjson/pointer.h>

#include <gtest/gtest.h>

#include <thread>

namespace {

class Programs : public ::testing::Test
{
protected:
    void SetUp() override { start(cloudsim::CloudOptions()); }

    void start(cloudsim::CloudOptions const& options)
    {
        cloud = std::make_unique<cloudsim::CloudServer>(options);
        ASSERT_TRUE(cloud->start()) << cloud->errorString().toStdString();
        free = std::make_unique<Device>(*cloud, "AA:00:00:00:00:01");
        premium = std::make_unique<Device>(*cloud, "AA:00:00:00:00:02");
        ASSERT_TRUE(free->authenticate());
        ASSERT_TRUE(premium->authenticate());
        for (char const* service : {"deezer", "amazon"}) {
            cloud->logIn(free->id(), service, "me@example.com");
            cloud->logIn(premium->id(), service, "premium@example.com");
        }
    }

    static QStringList trackIds(Device::Reply const& r)
    {
        QStringList ids;
        for (auto const& e : r.json["content"]["entries"].GetArray())
            ids << QString::fromUtf8(e["id"][2].GetString());
        return ids;
    }

    static int intAt(Device::Reply const& r, char const* pointer)
    {
        rapidjson::Value const* v = rapidjson::Pointer(pointer).Get(r.json);
        return v && v->IsInt() ? v->GetInt() : -1;
    }

    static bool flagAt(Device::Reply const& r, char const* pointer)
    {
        rapidjson::Value const* v = rapidjson::Pointer(pointer).Get(r.json);
        return v && v->IsBool() && v->GetBool();
    }

    std::string below(std::string const& url) const { return url.substr(cloud->baseUrl().size()); }

    std::unique_ptr<cloudsim::CloudServer> cloud;
    std::unique_ptr<Device> free;
    std::unique_ptr<Device> premium;
};

TEST_F(Programs, flowHandsOutTheNextFiveTracksAtEachCallEachWithItsOwnStream)
{
    Device::Reply const first = free->get("/deezer/flow");
    EXPECT_EQ(first.string("/id/1"), "program");
    EXPECT_EQ(trackIds(first), (QStringList{"dz-fl1", "dz-fl2", "dz-fl3", "dz-fl4", "dz-fl5"}));
    EXPECT_EQ(trackIds(free->get("/deezer/flow")), (QStringList{"dz-fl6", "dz-fl7", "dz-fl8", "dz-fl9", "dz-fl10"}));
    EXPECT_EQ(trackIds(premium->get("/deezer/flow")).first(), "dz-fl1") << "each device has its own Flow";

    std::string const stream = first.string("/content/entries/1/streams/0/url");
    Device::Reply const redirect = free->get(below(stream));
    EXPECT_EQ(redirect.string("/id/1"), "redirect");
    EXPECT_EQ(below(redirect.string("/url")), "/media/dz-fl2.mp3");
    EXPECT_EQ(below(redirect.string("/events/stop")), "/deezer/events/stop?stream=dz-fl2");
    Device::Reply const track = free->get(below(first.string("/content/entries/1/url")));
    EXPECT_EQ(track.string("/title"), first.string("/content/entries/1/title"));
    EXPECT_EQ(free->get("/id/deezer/track/dz-fl2").body, track.body);
    EXPECT_EQ(premium->get("/deezer/streams/dz-fl0").status, 404);
}

TEST_F(Programs, aFreeAccountHasSixSkipsAndAPremiumOneNoLimit)
{
    Device::Reply const batch = free->get("/deezer/flow");
    EXPECT_EQ(intAt(batch, "/skip/available"), 6);
    std::string const status = below(batch.string("/skip/status"));
    std::string const skip = below(batch.string("/skip/url"));
    EXPECT_EQ(intAt(free->get(status), "/available"), 6);
    EXPECT_EQ(intAt(free->get(status), "/available"), 6) << "asking the count uses none";

    Device::Reply used = free->get(skip);
    EXPECT_EQ(intAt(used, "/available"), 5);
    EXPECT_EQ(used.json.MemberCount(), 3u) << "url, status, available and nothing else";
    for (int i = 0; i < 6; ++i)
        used = free->get(skip);
    EXPECT_EQ(intAt(used, "/available"), 0) << "never below none";
    EXPECT_EQ(intAt(free->get("/deezer/flow"), "/skip/available"), 0);

    EXPECT_FALSE(premium->get("/deezer/flow").json.HasMember("skip"));
}

TEST_F(Programs, skipsComeBackAsTheyLeaveTheWindow)
{
    cloudsim::CloudOptions options;
    options.skipWindowSeconds = 1;
    options.skipsPerWindow = 1;
    start(options);
    EXPECT_EQ(intAt(free->get("/deezer/flow/skip"), "/available"), 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    EXPECT_EQ(intAt(free->get("/deezer/flow/skips"), "/available"), 1);
}

TEST_F(Programs, stationPagesLeadForwardAndBack)
{
    Device::Reply const first = free->get("/amazon/stations/chill");
    EXPECT_EQ(trackIds(first).first(), "am-st1");
    EXPECT_TRUE(first.string("/content/pagination/prev").empty());
    Device::Reply const second = free->get(below(first.string("/content/pagination/next")));
    EXPECT_EQ(trackIds(second).first(), "am-st2");
    EXPECT_EQ(below(second.string("/content/pagination/prev")), "/amazon/stations/chill?p=1");
    EXPECT_EQ(free->get("/amazon/streams/am-st2").string("/encryption/type"), "widevine");
}

TEST_F(Programs, ratingsShowInTheActiveFlagsAndOneTrackRefusesThem)
{
    Device::Reply const batch = free->get("/deezer/flow");
    ASSERT_EQ(batch.string("/content/entries/1/actions/0/id/2"), "rate.positive");
    EXPECT_TRUE(flagAt(batch, "/content/entries/1/actions/1/active")) << "neutral until rated";

    Device::Reply const liked = free->get(below(batch.string("/content/entries/1/actions/0/url")));
    EXPECT_EQ(liked.string("/id/1"), "action");
    EXPECT_FALSE(liked.string("/message").empty());
    Device::Reply const track = free->get("/deezer/tracks/dz-fl2");
    EXPECT_TRUE(flagAt(track, "/actions/0/active"));
    EXPECT_FALSE(flagAt(track, "/actions/1/active"));
    EXPECT_FALSE(flagAt(premium->get("/deezer/tracks/dz-fl2"), "/actions/0/active")) << "another account's";

    Device::Reply const refused = free->get(below(batch.string("/content/entries/2/actions/2/url")));
    EXPECT_EQ(refused.string("/id/1"), "error");
    EXPECT_FALSE(refused.string("/message").empty());
    EXPECT_TRUE(flagAt(free->get("/deezer/tracks/dz-fl3"), "/actions/1/active"));
}

// Tests serve programs of their own at the same paths; the built-in ones
// must not answer in their place.
TEST(ProgramsOfAnotherCatalogue, onlyThePathsTheCatalogueNamesBehave)
{
    QTemporaryDir dir;
    QFile file(dir.filePath("test.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"/deezer/flow": {"id": ["deezer", "program", "flow"], "title": "Mine"},
                  "/odd": {"@answer": "no such behaviour"}})");
    file.close();
    cloudsim::CloudOptions options;
    options.dataDirectory = dir.path();
    cloudsim::CloudServer cloud(options);
    ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
    Device device(cloud);
    ASSERT_TRUE(device.authenticate());

    EXPECT_EQ(device.get("/deezer/flow").string("/title"), "Mine");
    EXPECT_EQ(device.get("/deezer/streams/dz-fl1").status, 404);
    EXPECT_EQ(device.get("/amazon/tracks/am-st1").status, 404);
    EXPECT_EQ(device.get("/odd").status, 500);
}

} // namespace
