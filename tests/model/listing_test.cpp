#include "model_fixture.h"

#include "AlbumItem.h"
#include "ArtistItem.h"
#include "ButtonItem.h"
#include "DirectoryItem.h"
#include "EpisodeItem.h"
#include "FeedContainer.h"
#include "FieldItem.h"
#include "FormItem.h"
#include "GenreItem.h"
#include "MessageItem.h"
#include "PlaylistItem.h"
#include "ProgramItem.h"
#include "RadioItem.h"
#include "StreamFeedItem.h"
#include "TrackItem.h"

#include "CollectionItem.h"
#include "PaginationItem.h"
#include "SkipItem.h"

#include <gtest/gtest.h>

using namespace airable;

namespace {

// A listing of type `itype` whose entries are `entries`; `more` adds members.
QByteArray listing(char const* itype, char const* entries, char const* more = "")
{
    return QStringLiteral(R"({"id":["s","%1","L"],"content":{"entries":[%2]}%3})")
        .arg(QLatin1String(itype), QLatin1String(entries), QLatin1String(more))
        .toUtf8();
}

QStringList idsOf(AirableVector<ContentItem::Ptr> const& items)
{
    QStringList ids;
    for (ContentItem::Ptr const& item : items)
        ids << item->name();
    return ids;
}

char const* const mixedEntries = R"({"id":["s","track","t1"]},{"id":["s","playlist","p1"]},
    {"id":["s","radio","r1"]},{"title":"plain"},{"id":["s","track","t2"]},{"id":["s","action","a1"]},
    {"id":["s","album","al1"]})";

} // namespace

TEST(ContentItem, browsableAndPlayableFollowTheClassAndItsStreams)
{
    struct Row
    {
        char const* json;
        bool browsable;
        bool playable;
    } const table[] = {
        {R"({"id":["s","track",1]})", false, false},
        {R"({"id":["s","track",1],"streams":[]})", false, true},
        {R"({"id":["s","track",1],"x":{"streams":[]}})", false, false},
        {R"({"id":["s","radio.stream",1],"streams":{}})", false, true},
        {R"({"id":["s","radio",1],"streams":[]})", true, false},
        {R"({"id":["s","radio",1],"streams":[{"id":["s","radio.stream",1]}]})", false, true},
        {R"({"id":["s","radio",1],"streams":[{"id":["s","track",1]}]})", true, false},
        {R"({"id":["s","feed.episode",1]})", true, false},
        {R"({"id":["s","feed.episode",1],"streams":[]})", false, true},
        {R"({"id":["s","program",1]})", false, true},
        {R"({"id":["s","listing",1]})", true, false},
        {R"({"id":["s","form",1]})", true, false},
        {R"({"id":["s","message",1]})", true, false},
        {R"({"id":["s","service",1]})", true, false},
        {R"({"id":["s","place",1]})", true, false},
        {R"({"id":["s","button",1]})", false, false},
        {R"({"id":["s","field",1]})", false, false},
    };
    for (Row const& row : table) {
        SCOPED_TRACE(row.json);
        auto item = parseAs<ContentItem>(row.json);
        ASSERT_FALSE(item.isNull());
        EXPECT_EQ(item->browsable(), row.browsable);
        EXPECT_EQ(item->playable(), row.playable);
    }
}

TEST(ContentList, itemsKeepTheEntriesTheirClassShows)
{
    struct Row
    {
        char const* itype;
        QStringList ids;
    } const table[] = {
        {"listing", {"t1", "p1", "r1", "t2", "al1"}},
        {"directory", {"t1", "p1", "r1", "t2", "al1"}},
        {"genre", {"t1", "p1", "r1", "t2", "al1"}},
        {"feed", {"t1", "p1", "r1", "t2", "al1"}},
        {"program", {"t1", "p1", "r1", "t2", "al1"}},
        {"album", {"t1", "t2"}},
        {"playlist", {"t1", "t2"}},
        {"artist", {"p1", "r1", "al1"}},
    };
    for (Row const& row : table) {
        SCOPED_TRACE(row.itype);
        auto list = parseAs<ContentList>(listing(row.itype, mixedEntries));
        ASSERT_FALSE(list.isNull());
        EXPECT_EQ(idsOf(list->items()), row.ids);
    }
}

TEST(ContentList, itemsAreEmptyWhenContentOrEntriesAreMissing)
{
    for (char const* json : {R"({"id":["s","listing",1]})", R"({"id":["s","listing",1],"content":{}})",
                             R"({"id":["s","listing",1],"entries":[{"id":["s","track",1]}]})",
                             R"({"id":["s","listing",1],"content":{"x":[{"id":["s","track",1]}]}})"}) {
        SCOPED_TRACE(json);
        EXPECT_TRUE(parseAs<ListingContainer>(json)->items().isEmpty());
    }
    // The first content container decides, even when a later one has entries.
    auto first = parseAs<ListingContainer>(
        R"({"id":["s","listing",1],"content":{},"content":{"entries":[{"id":["s","track",1]}]}})");
    EXPECT_TRUE(first->items().isEmpty());
}

TEST(RadioItem, entriesStandingForStreamsAreNotShown)
{
    auto radio = parseAs<RadioItem>(listing("radio", R"({"id":["s","listing","xstreamsy"]},
        {"id":["s","listing","streams"]},{"id":["s","listing","Streams"]},{"id":["s","track","t"]})"));
    ASSERT_FALSE(radio.isNull());
    EXPECT_EQ(idsOf(radio->items()), QStringList({"Streams", "t"}));
    EXPECT_EQ(radio->streamAttributes(), QLatin1String("itype=\"stream\" stype=\"s\" itemid=\"L\""));
}

TEST(RadioItem, streamsAreTheStreamItemsUnderTheStreamsKey)
{
    auto radio = parseAs<RadioItem>(R"({"id":["s","radio",1],"streams":[
        {"id":["s","radio.stream","a"]},{"id":["s","track","b"]},{"id":["s","feed.stream","c"]}]})");
    ASSERT_FALSE(radio.isNull());
    AirableVector<StreamItem::Ptr> const streams = radio->streams();
    ASSERT_EQ(streams.size(), 2);
    EXPECT_EQ(streams.at(0)->name(), QLatin1String("a"));
    EXPECT_EQ(streams.at(1)->name(), QLatin1String("c"));
}

TEST(EpisodeItem, aStreamsEntryIsReplacedByTheFirstStreamOfItsListing)
{
    auto episode = parseAs<EpisodeItem>(listing("feed.episode", R"({"id":["s","track","before"]},
        {"id":["s","listing","streams"],"content":{"entries":[{"id":["s","track","t"]},
            {"id":["s","feed.stream","fs1"]},{"id":["s","feed.stream","fs2"]}]}},
        {"id":["s","listing","streams"]},
        {"id":["s","track","after"]})"));
    ASSERT_FALSE(episode.isNull());
    AirableVector<ContentItem::Ptr> const items = episode->items();
    EXPECT_EQ(idsOf(items), QStringList({"before", "fs1", "after"}));
    EXPECT_NE(dynamic_cast<StreamFeedItem*>(items.at(1).get()), nullptr);

    auto withStreams = parseAs<EpisodeItem>(R"({"id":["s","feed.episode",1],"streams":[{"id":["s","feed.stream",2]}]})");
    ASSERT_EQ(withStreams->streams().size(), 1);
    EXPECT_EQ(withStreams->streams().first()->itype(), QLatin1String("feed.stream"));
}

TEST(FeedContainer, episodesComeFromTheEntryNamedAfterTheFeed)
{
    char const* const entries = R"({"id":["s","listing","feed.F.episodes"],"content":{"entries":[
        {"id":["s","feed.episode","e1"]},{"id":["s","track","t"]},{"id":["s","feed.episode","e2"]}]}})";
    auto feed = parseAs<FeedContainer>(QByteArray(R"({"id":["s","feed","F"],"content":{"entries":[)") + entries + "]}}");
    ASSERT_FALSE(feed.isNull());
    AirableVector<EpisodeItem::Ptr> const episodes = feed->episodes();
    ASSERT_EQ(episodes.size(), 2);
    EXPECT_EQ(episodes.at(0)->name(), QLatin1String("e1"));
    EXPECT_EQ(episodes.at(1)->name(), QLatin1String("e2"));

    auto other = parseAs<FeedContainer>(QByteArray(R"({"id":["s","feed","G"],"content":{"entries":[)") + entries + "]}}");
    EXPECT_TRUE(other->episodes().isEmpty());
}

TEST(ListingContainer, containerPlayableByTypeWordOrByAnyItem)
{
    struct Row
    {
        QByteArray json;
        bool expected;
    } const table[] = {
        {listing("playlist", ""), true},
        {listing("album", ""), true},
        {listing("radio", ""), true},
        {listing("listing", ""), true},
        {listing("nosuchtype", ""), true},
        {listing("directory", ""), false},
        {listing("directory", R"({"id":["s","track",1]})"), false},
        {listing("directory", R"({"id":["s","track",1],"streams":[]})"), true},
        {listing("genre", R"({"id":["s","directory",1]},{"id":["s","playlist",2]})"), true},
        {listing("genre", R"({"id":["s","directory",1],"content":{"entries":[{"id":["s","album",2]}]}})"), true},
        {listing("artist", R"({"id":["s","directory",1]})"), false},
    };
    for (Row const& row : table) {
        SCOPED_TRACE(row.json.toStdString());
        auto list = parseAs<ListingContainer>(row.json);
        ASSERT_FALSE(list.isNull());
        EXPECT_EQ(list->containerPlayable(), row.expected);
    }
}

TEST(ListingContainer, pagingFillsThePageNumberIntoThePageUrl)
{
    auto list = parseAs<ListingContainer>(listing("listing", "",
        R"(,"content":{"pagination":{"pages":{"url":"x?p=:value:&q=:value:&r=:VALUE:"}},"collection":{"size":9}})"));
    ASSERT_FALSE(list.isNull());
    EXPECT_TRUE(list->pagination().isNull()) << "only the first content container counts";
    EXPECT_TRUE(list->collection().isNull());

    auto paged = parseAs<ListingContainer>(
        R"({"id":["s","listing",1],"content":{"pagination":{"pages":{"url":"x?p=:value:&q=:value:&r=:VALUE:"}},
            "collection":{"size":9}}})");
    ASSERT_FALSE(paged->pagination().isNull());
    EXPECT_EQ(paged->url(3), QLatin1String("x?p=3&q=3&r=:VALUE:"));
    EXPECT_EQ(paged->url(4000000000u), QLatin1String("x?p=4000000000&q=4000000000&r=:VALUE:"));
    EXPECT_EQ(paged->collection()->size(), 9);
    EXPECT_EQ(ListingContainer::modifyUrlForPage(QStringLiteral("a:value:b"), 0), QLatin1String("a0b"));
    EXPECT_TRUE(parseAs<ListingContainer>(listing("listing", ""))->url(1).isEmpty());
}

TEST(ListingContainer, releaseTellsWhetherTheYearIsThere)
{
    struct Row
    {
        char const* json;
        bool ok;
        int year;
    } const table[] = {
        {R"({"id":["s","album",1],"release":1999})", true, 1999},
        {R"({"id":["s","album",1]})", false, 0},
        {R"({"id":["s","album",1],"release":"1999"})", false, 0},
        {R"({"id":["s","album",1],"release":0})", true, 0},
    };
    for (Row const& row : table) {
        SCOPED_TRACE(row.json);
        bool ok = !row.ok;
        EXPECT_EQ(parseAs<ListingContainer>(row.json)->release(&ok), row.year);
        EXPECT_EQ(ok, row.ok);
    }
}

TEST(FormItem, rowsAreTheFieldsThenTheButtons)
{
    auto form = parseAs<FormItem>(R"({"id":["s","form",1],
        "buttons":[{"id":["s","button","cancel"]},{"id":["s","field","stray"]},{"id":["s","button","submit"]}],
        "fields":[{"id":["s","field","user"]},{"id":["s","button","odd"]},{"id":["s","field","pass"]}]})");
    ASSERT_FALSE(form.isNull());
    EXPECT_EQ(idsOf(form->items()), QStringList({"user", "pass", "cancel", "submit"}));

    auto message = parseAs<MessageItem>(R"({"id":["s","message",1],"fields":[{"id":["s","field","f"]}],
        "buttons":[{"id":["s","button","ok"]}]})");
    EXPECT_EQ(idsOf(message->items()), QStringList({"ok"}));
}

TEST(FormItem, buttonsAreFoundByKindOrByName)
{
    auto form = parseAs<FormItem>(R"({"id":["s","form",1],"buttons":[
        {"id":["s","button","cancel"]},{"id":["s","button","submit"]},{"id":["s","button","finish"]}]})");
    ASSERT_FALSE(form.isNull());
    EXPECT_EQ(form->button(1)->name(), QLatin1String("submit"));
    EXPECT_EQ(form->button(2)->name(), QLatin1String("cancel"));
    EXPECT_TRUE(form->button(3).isNull());
    EXPECT_TRUE(form->button(0).isNull());
    EXPECT_EQ(form->button(QStringLiteral("finish"))->name(), QLatin1String("finish"));
    EXPECT_TRUE(form->button(QStringLiteral("Finish")).isNull());

    struct Row
    {
        char const* id;
        int kind;
    } const words[] = {{"forward", 1}, {"finish", 1}, {"submit", 1}, {"repeat", 1},
                       {"backward", 2}, {"cancel", 2}, {"Submit", 0}, {"ok", 0}};
    for (Row const& row : words) {
        SCOPED_TRACE(row.id);
        auto one = parseAs<MessageItem>(
            QStringLiteral(R"({"id":["s","message",1],"buttons":[{"id":["s","button","%1"]}]})").arg(row.id).toUtf8());
        EXPECT_EQ(!one->button(1).isNull(), row.kind == 1);
        EXPECT_EQ(!one->button(2).isNull(), row.kind == 2);
    }
}

TEST(ProgramItem, tracksAndSkipAreFoundByClass)
{
    auto program = parseAs<ProgramItem>(listing("program",
        R"({"id":["s","track","t1"]},{"id":["s","playlist","p"]},{"id":["s","track","t2"]})",
        R"(,"limits":{"available":1},"skip":{"available":4})"));
    ASSERT_FALSE(program.isNull());
    AirableVector<TrackItem::Ptr> const tracks = program->tracks();
    ASSERT_EQ(tracks.size(), 2);
    EXPECT_EQ(tracks.at(1)->name(), QLatin1String("t2"));
    ASSERT_FALSE(program->skip().isNull());
    EXPECT_EQ(program->skip()->available(), 4);
    EXPECT_TRUE(parseAs<ProgramItem>(listing("program", ""))->skip().isNull());
}
