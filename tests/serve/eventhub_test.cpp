#include "eventhub.h"

#include <QJsonObject>
#include <gtest/gtest.h>
#include <thread>

namespace {

using namespace std::chrono_literals;

TEST(EventHub, aStreamGetsWhatCameAfterTheEventItSawLast)
{
    EventHub hub;
    hub.publish("player", {{"command", "play"}});
    quint64 const seen = hub.latest();
    hub.publish("notification", {{"text", "Hello"}});
    hub.publish("player", {{"command", "stop"}});

    std::vector<EventHub::Event> const missed = hub.after(seen, 0ms);
    ASSERT_EQ(missed.size(), 2u);
    EXPECT_EQ(missed[0].type, "notification");
    EXPECT_EQ(missed[1].id, hub.latest());
    EXPECT_EQ(EventHub::wireText(missed[0]),
              "id: " + std::to_string(seen + 1) + "\nevent: notification\ndata: {\"text\":\"Hello\"}\n\n");
}

TEST(EventHub, aWaitEndsWithTheNextEventOrWithTheHub)
{
    EventHub hub;
    std::thread later([&hub] {
        std::this_thread::sleep_for(20ms);
        hub.publish("change", {});
    });
    EXPECT_EQ(hub.after(hub.latest(), 5s).size(), 1u);
    later.join();

    std::thread closing([&hub] {
        std::this_thread::sleep_for(20ms);
        hub.close();
    });
    auto const start = std::chrono::steady_clock::now();
    EXPECT_TRUE(hub.after(hub.latest(), 5s).empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, 2s) << "a closed hub lets its streams go at once";
    closing.join();
}

TEST(EventHub, aPageBackAfterLongKeepsOnlyTheLatestEvents)
{
    EventHub hub;
    for (int i = 0; i < 500; ++i)
        hub.publish("player", {{"n", i}});
    std::vector<EventHub::Event> const kept = hub.after(0, 0ms);
    ASSERT_FALSE(kept.empty());
    EXPECT_LT(kept.size(), 500u);
    EXPECT_EQ(kept.back().id, 500u);
}

} // namespace
