#include "cloudserver.h"
#include "device.h"

#include <QQueue>
#include <QSet>

#include <rapidjson/pointer.h>

#include <gtest/gtest.h>

#include <set>

namespace {

class Dialogs : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
        ASSERT_TRUE(device.authenticate());
        // TIDAL's login on its own page stays for the device to meet.
        for (char const* service : {"deezer", "qobuz", "napster", "highresaudio", "amazon"})
            cloud.logIn(device.id(), service, "me@example.com");
    }

    static QStringList entryIds(Device::Reply const& r)
    {
        QStringList ids;
        rapidjson::Value const* entries = rapidjson::Pointer("/content/entries").Get(r.json);
        if (!entries || !entries->IsArray())
            return ids;
        for (auto const& e : entries->GetArray())
            ids << QString::fromUtf8(e["id"][2].GetString());
        return ids;
    }

    std::string below(std::string const& url) const { return url.substr(cloud.baseUrl().size()); }

    cloudsim::CloudServer cloud;
    Device device{cloud};
};

TEST_F(Dialogs, qobuzSearchFindsWhatIsTypedInsideTheQuotesTheDeviceAdds)
{
    Device::Reply const quoted = device.get("/qobuz/search/results?q=%22estuary%22");
    EXPECT_EQ(entryIds(quoted), (QStringList{"qb-al2", "qb-al2t1", "qb-al2t2", "qb-al2t3"}))
        << "the album, and the tracks of an album of that name";
    EXPECT_FALSE(quoted.json["content"]["entries"][0].HasMember("content")) << "an entry, not the whole album";
    EXPECT_TRUE(quoted.json["content"]["entries"][1].HasMember("streams"));
    EXPECT_EQ(quoted.string("/url"), cloud.baseUrl().toStdString() + "/qobuz/search/results?q=%22estuary%22");
    EXPECT_EQ(entryIds(device.get("/qobuz/search/results?q=Saltmarsh")), QStringList{"qb-al2t2"});
    EXPECT_TRUE(entryIds(device.get("/qobuz/search/results?q=%22polka%22")).isEmpty());

    Device::Reply const empty = device.get("/qobuz/search/results?q=%22%22");
    EXPECT_EQ(empty.string("/id/1"), "message");
    EXPECT_EQ(empty.string("/buttons/0/url"), cloud.baseUrl().toStdString() + "/qobuz/search");
}

TEST_F(Dialogs, radioSearchIsNarrowedByItsGenreAndComesInPages)
{
    Device::Reply const all = device.get("/airable/radios/search/results?q=jazz&genre=all");
    ASSERT_EQ(entryIds(all).size(), 25);
    EXPECT_GT(all.json["content"]["collection"]["size"].GetInt(), 25);
    std::string const next = all.string("/content/pagination/next");
    EXPECT_EQ(below(next), "/airable/radios/search/results?q=jazz&genre=all&p=2");
    EXPECT_EQ(device.get(below(next)).json["content"]["collection"]["offset"].GetInt(), 25);

    QStringList const genre = entryIds(device.get("/airable/radios/genres/jazz"));
    QStringList const found = entryIds(device.get("/airable/radios/search/results?q=jazz&genre=jazz"));
    ASSERT_FALSE(found.isEmpty());
    for (QString const& id : found)
        EXPECT_TRUE(genre.contains(id)) << id.toStdString();
    EXPECT_EQ(device.get("/airable/radios/search/results?q=&genre=jazz").string("/id/1"), "message");
}

// What the module can show of messages must be met by browsing, as a person
// meets it: from the root through the entries of listings.
TEST_F(Dialogs, everyKindOfMessageIsReachedByBrowsingFromTheRoot)
{
    std::string const base = cloud.baseUrl().toStdString();
    std::set<std::string> seen{"/"};
    QQueue<std::string> queue;
    queue.enqueue("/");
    QSet<QString> buttons; // "<message's service>/<button id>"
    std::string resumeUrl;
    while (!queue.isEmpty()) {
        Device::Reply const r = device.get(queue.dequeue());
        if (r.string("/id/1") == "message" && r.json.HasMember("buttons")) {
            for (auto const& b : r.json["buttons"].GetArray()) {
                buttons << QString::fromStdString(r.string("/id/0") + "/" + b["id"][2].GetString());
                if (std::string(b["id"][2].GetString()) == "resume")
                    resumeUrl = b["url"].GetString();
                if (std::string(b["id"][2].GetString()) == "oauth") {
                    EXPECT_NE(std::string(b["url"].GetString()).find(":return:"), std::string::npos);
                }
            }
        }
        rapidjson::Value const* entries = rapidjson::Pointer("/content/entries").Get(r.json);
        if (!entries || !entries->IsArray())
            continue;
        for (auto const& e : entries->GetArray()) {
            std::string const url = e.HasMember("url") && e["url"].IsString() ? e["url"].GetString() : "";
            if (url.compare(0, base.size(), base) != 0 || url.find("/logout") != std::string::npos)
                continue;
            if (seen.insert(below(url)).second) {
                queue.enqueue(below(url));
            }
        }
    }
    for (char const* button : {"airable/ok", "airable/cancel", "amazon/signup", "tidal/oauth", "airable/resume"})
        EXPECT_TRUE(buttons.contains(button)) << button;
    Device::Reply const resumed = device.get(below(resumeUrl));
    EXPECT_EQ(resumed.status, 200);
    EXPECT_TRUE(resumed.body.empty());
}

} // namespace
