#include "cloudserver.h"
#include "device.h"

#include <gtest/gtest.h>

namespace {

class Events : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
        ASSERT_TRUE(device.authenticate());
        cloud.logIn(device.id(), "deezer", "me@example.com");
    }

    // Calls the URL that a stream's redirect names for the event.
    Device::Reply report(std::string const& stream, char const* word)
    {
        std::string const url = device.get(stream).string((std::string("/events/") + word).c_str());
        EXPECT_FALSE(url.empty()) << stream << " " << word;
        return device.get(url.substr(cloud.baseUrl().size()));
    }

    cloudsim::CloudServer cloud;
    Device device{cloud, "AA:00:00:00:00:07"};
};

TEST_F(Events, eachCallIsKeptWithItsWordStreamAndDevice)
{
    Device::Reply const radio = report("/airable/radios/r1003/streams/2", "start");
    EXPECT_EQ(radio.status, 204);
    EXPECT_TRUE(radio.body.empty()) << "success without a body";
    EXPECT_EQ(report("/deezer/streams/dz-al1t1/128", "pause").string("/id/2"), "true") << "success as an object";
    report("/deezer/streams/dz-al1t1/128", "error");

    QList<cloudsim::PlaybackEvent> const events = cloud.eventLog();
    ASSERT_EQ(events.size(), 3);
    EXPECT_EQ(events[0].word, "start");
    EXPECT_EQ(events[0].stream, "r1003-2");
    EXPECT_EQ(events[0].device, "AA:00:00:00:00:07");
    EXPECT_EQ(events[1].stream, "dz-al1t1-128");
    EXPECT_EQ(events[2].word, "error");
    EXPECT_LE(events[0].time, events[2].time);

    cloud.clearLog();
    EXPECT_TRUE(cloud.eventLog().isEmpty());
}

// The listener hears each event once it is kept, and nothing once removed.
TEST_F(Events, aListenerIsToldOfEachEventAsItIsKept)
{
    QStringList heard;
    int keptWhenHeard = -1;
    cloud.setEventListener([&](cloudsim::PlaybackEvent const& event) {
        heard << event.word + ' ' + event.stream;
        keptWhenHeard = cloud.eventLog().size();
    });
    report("/airable/radios/r1003/streams/2", "start");
    EXPECT_EQ(heard, QStringList{"start r1003-2"});
    EXPECT_EQ(keptWhenHeard, 1);

    cloud.setEventListener(nullptr);
    report("/airable/radios/r1003/streams/2", "stop");
    EXPECT_EQ(heard.size(), 1);
    EXPECT_EQ(cloud.eventLog().size(), 2);
}

TEST_F(Events, theEndOfOneEpisodeAnswersAMessageToShow)
{
    Device::Reply const notice = report("/airable/feeds/f303/episodes/5/stream", "stop");
    EXPECT_EQ(notice.string("/id/1"), "message");
    EXPECT_FALSE(notice.string("/description").empty());
    EXPECT_EQ(report("/airable/feeds/f303/episodes/4/stream", "stop").status, 204);
    EXPECT_EQ(cloud.eventLog().size(), 2);
}

} // namespace
