#include "model_fixture.h"

#include "SimpleValue.h"

#include "AccessTokenContainer.h"
#include "ActionItem.h"
#include "AlbumItem.h"
#include "ButtonItem.h"
#include "DescriptionItem.h"
#include "EpisodeItem.h"
#include "ErrorItem.h"
#include "FeedContainer.h"
#include "FieldItem.h"
#include "FormItem.h"
#include "LanguageItem.h"
#include "MessageItem.h"
#include "PlaceItem.h"
#include "ProgramItem.h"
#include "RadioItem.h"
#include "RedirectItem.h"
#include "StreamRadioItem.h"
#include "TrackItem.h"

#include <gtest/gtest.h>

#include <QThread>
#include <QVariant>

#include <functional>

using namespace airable;

void PrintTo(QVariant const& value, std::ostream* out)
{
    *out << value.typeName() << "(" << value.toString().toStdString() << ")";
}

namespace {

template <typename T>
std::function<QVariant(ContainerWithId::Ptr const&)> read(QVariant (*get)(T const&))
{
    return [get](ContainerWithId::Ptr const& object) {
        auto typed = object.dynamicCast<T>();
        return typed ? get(*typed) : QVariant(QStringLiteral("<wrong class>"));
    };
}

struct Accessor
{
    char const* itype;
    char const* key;
    char const* present;
    QVariant expected;
    std::function<QVariant(ContainerWithId::Ptr const&)> get;
};

QByteArray withMember(char const* itype, char const* key, char const* value)
{
    return QStringLiteral(R"({"id":["s","%1","i"],"%2":%3})").arg(itype, key, value).toUtf8();
}

// Values of another JSON type than the accessor reads; every one counts as missing.
QList<char const*> otherTypesThan(QVariant const& expected)
{
    switch (expected.type()) {
    case QVariant::String:
        return {"5", "true", "1.5", "null", "{}", "[\"v\"]"};
    case QVariant::Int:
        return {"\"7\"", "7.5", "true", "null", "{}"};
    default:
        return {"1", "\"true\"", "null", "[true]"};
    }
}

QVariant defaultOf(QVariant const& expected)
{
    switch (expected.type()) {
    case QVariant::String:
        return QString();
    case QVariant::Int:
        return 0;
    default:
        return false;
    }
}

} // namespace

TEST(ItemAccessors, eachReadsItsKeyAndDefaultsWhenMissingOrOfAnotherType)
{
    Accessor const table[] = {
        {"track", "title", "\"v\"", "v", read<TrackItem>([](TrackItem const& o) -> QVariant { return o.title(); })},
        {"track", "url", "\"v\"", "v", read<TrackItem>([](TrackItem const& o) -> QVariant { return o.url(); })},
        {"track", "description", "\"v\"", "v",
         read<TrackItem>([](TrackItem const& o) -> QVariant { return o.description(); })},
        {"track", "duration", "7", 7, read<TrackItem>([](TrackItem const& o) -> QVariant { return o.duration(); })},
        {"feed.episode", "duration", "7", 7,
         read<EpisodeItem>([](EpisodeItem const& o) -> QVariant { return o.duration(); })},
        {"feed.episode", "date", "\"v\"", "v", read<EpisodeItem>([](EpisodeItem const& o) -> QVariant { return o.date(); })},
        {"action", "title", "\"v\"", "v", read<ActionItem>([](ActionItem const& o) -> QVariant { return o.title(); })},
        {"action", "url", "\"v\"", "v", read<ActionItem>([](ActionItem const& o) -> QVariant { return o.url(); })},
        {"action", "action", "\"v\"", "v", read<ActionItem>([](ActionItem const& o) -> QVariant { return o.action(); })},
        {"action", "message", "\"v\"", "v", read<ActionItem>([](ActionItem const& o) -> QVariant { return o.message(); })},
        {"action", "active", "true", true, read<ActionItem>([](ActionItem const& o) -> QVariant { return o.active(); })},
        {"error", "message", "\"v\"", "v", read<ErrorItem>([](ErrorItem const& o) -> QVariant { return o.message(); })},
        {"button", "url", "\"v\"", "v", read<ButtonItem>([](ButtonItem const& o) -> QVariant { return o.baseUrl(); })},
        {"field", "type", "\"v\"", "v", read<FieldItem>([](FieldItem const& o) -> QVariant { return o.type(); })},
        {"field", "value", "\"v\"", "v", read<FieldItem>([](FieldItem const& o) -> QVariant { return o.value(); })},
        {"field", "required", "true", true, read<FieldItem>([](FieldItem const& o) -> QVariant { return o.required(); })},
        {"feed", "slogan", "\"v\"", "v", read<FeedContainer>([](FeedContainer const& o) -> QVariant { return o.slogan(); })},
        {"feed", "date", "\"v\"", "v", read<FeedContainer>([](FeedContainer const& o) -> QVariant { return o.date(); })},
        {"radio", "slogan", "\"v\"", "v", read<RadioItem>([](RadioItem const& o) -> QVariant { return o.slogan(); })},
        {"form", "signup", "\"v\"", "v", read<FormItem>([](FormItem const& o) -> QVariant { return o.signUpLink(); })},
        {"language", "iso", "\"v\"", "v", read<LanguageItem>([](LanguageItem const& o) -> QVariant { return o.iso(); })},
        {"place", "iso", "\"v\"", "v", read<PlaceItem>([](PlaceItem const& o) -> QVariant { return o.iso(); })},
        {"place", "type", "\"v\"", "v", read<PlaceItem>([](PlaceItem const& o) -> QVariant { return o.type(); })},
        {"message", "type", "\"v\"", "v", read<MessageItem>([](MessageItem const& o) -> QVariant { return o.type(); })},
        {"redirect", "url", "\"v\"", "v", read<RedirectItem>([](RedirectItem const& o) -> QVariant { return o.url(); })},
        {"accesstoken", "token", "\"v\"", "v",
         read<AccessTokenContainer>([](AccessTokenContainer const& o) -> QVariant { return o.accessToken(); })},
    };
    for (Accessor const& row : table) {
        SCOPED_TRACE(std::string(row.itype) + "." + row.key);
        EXPECT_EQ(row.get(parseAs<ContainerWithId>(withMember(row.itype, row.key, row.present))), row.expected);
        EXPECT_EQ(row.get(parseAs<ContainerWithId>(withMember(row.itype, "other", row.present))), defaultOf(row.expected));
        for (char const* other : otherTypesThan(row.expected)) {
            SCOPED_TRACE(other);
            EXPECT_EQ(row.get(parseAs<ContainerWithId>(withMember(row.itype, row.key, other))), defaultOf(row.expected));
        }
    }
}

TEST(ItemAccessors, imageUrlReadsTheUrlOfTheImageObject)
{
    EXPECT_EQ(parseAs<TrackItem>(R"({"id":["s","track",1],"image":{"url":"i"}})")->imageUrl(), QLatin1String("i"));
    for (char const* json : {R"({"id":["s","track",1]})", R"({"id":["s","track",1],"image":"i"})",
                             R"({"id":["s","track",1],"image":{"src":"i"}})"})
        EXPECT_TRUE(parseAs<TrackItem>(json)->imageUrl().isEmpty()) << json;
}

TEST(ItemAccessors, actionsAreTheIdentifiedActionsUnderTheirKey)
{
    auto track = parseAs<TrackItem>(R"({"id":["s","track",1],"actions":[
        {"id":["s","action","play"],"title":"Play"},{"title":"plain"},{"id":["s","track","t"]},
        {"id":["s","action","like"],"active":true}]})");
    ASSERT_FALSE(track.isNull());
    AirableVector<ActionItem::Ptr> const actions = track->actions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions.at(0)->title(), QLatin1String("Play"));
    EXPECT_TRUE(actions.at(1)->active());
    EXPECT_EQ(track->actionWithId(QStringLiteral("like")).get(), actions.at(1).get());
    EXPECT_TRUE(track->actionWithId(QStringLiteral("Like")).isNull());
    EXPECT_TRUE(parseAs<TrackItem>(R"({"id":["s","track",1]})")->actions().isEmpty());
}

TEST(ItemAccessors, performAndReactionListTheirStringsAndDecideHasReaction)
{
    auto action = parseAs<ActionItem>(R"({"id":["s","action",1],"perform":["skip",3,"stop"],"reaction":[]})");
    ASSERT_FALSE(action.isNull());
    EXPECT_EQ(action->perform(), AirableVector<QString>({"skip", "stop"}));
    EXPECT_TRUE(action->reaction().isEmpty());

    struct Row
    {
        char const* members;
        bool message;
        bool error;
    } const table[] = {
        {"", false, false},
        {R"(,"reaction":["logout"])", true, true},
        {R"(,"perform":["pause"])", true, false},
        {R"(,"reaction":"logout")", false, false},
        {R"(,"reaction":[1])", false, false},
    };
    for (Row const& row : table) {
        SCOPED_TRACE(row.members);
        EXPECT_EQ(parseAs<MessageItem>(QByteArray(R"({"id":["s","message",1])") + row.members + "}")->hasReaction(),
                  row.message);
        EXPECT_EQ(parseAs<ErrorItem>(QByteArray(R"({"id":["s","error",1])") + row.members + "}")->hasReaction(),
                  row.error);
    }
}

TEST(ItemAccessors, fieldOptionsPairTheSentKeyWithTheShownText)
{
    auto field = parseAs<FieldItem>(R"({"id":["s","field","q"],"options":{"1":"Low","2":"High","3":7}})");
    ASSERT_FALSE(field.isNull());
    QVector<QPair<QString, QString>> const expected{{"1", "Low"}, {"2", "High"}, {"3", ""}};
    EXPECT_EQ(field->options(), expected);
    EXPECT_EQ(field->optionName(0), QLatin1String("1"));
    EXPECT_EQ(field->optionName(2), QLatin1String("3"));
    EXPECT_TRUE(field->optionName(-1).isEmpty());
    EXPECT_TRUE(field->optionName(3).isEmpty());

    auto bare = parseAs<FieldItem>(R"({"id":["s","field","q"]})");
    EXPECT_TRUE(bare->options().isEmpty());
    EXPECT_TRUE(bare->optionName(0).isEmpty());
}

TEST(ItemAccessors, geoReadsTheSecondNumberFromTheComma)
{
    struct Row
    {
        char const* geo;
        QVector<int> expected;
    } const table[] = {
        {R"("geo":"52,13")", {52, 0}},
        {R"("geo":"-3,4")", {-3, 0}},
        {R"("geo":"7")", {7, 7}},
        {R"("geo":"")", {0, 0}},
        {R"("geo":5)", {0, 0}},
        {R"("iso":"DE")", {0, 0}},
    };
    for (Row const& row : table) {
        SCOPED_TRACE(row.geo);
        auto place = parseAs<PlaceItem>(QByteArray(R"({"id":["s","place",1],)") + row.geo + "}");
        ASSERT_FALSE(place.isNull());
        EXPECT_EQ(place->geo(), row.expected);
    }
}

TEST(ItemAccessors, programTitleIsATextOrTheFirstTextInAnObject)
{
    struct Row
    {
        char const* title;
        char const* expected;
    } const table[] = {
        {R"("plain")", "plain"},
        {R"({"n":1,"short":"S","long":"L"})", "S"},
        {R"(["A","B"])", "A"},
        {R"({"n":1})", ""},
        {"5", ""},
    };
    for (Row const& row : table) {
        SCOPED_TRACE(row.title);
        auto program = parseAs<ProgramItem>(QByteArray(R"({"id":["s","program",1],"title":)") + row.title + "}");
        ASSERT_FALSE(program.isNull());
        EXPECT_EQ(program->title(), QLatin1String(row.expected));
    }
}

TEST(ItemAccessors, descriptionTitleIsTheTextItWasMadeWith)
{
    DescriptionItem::Ptr made(new DescriptionItem(QStringLiteral("s"), QStringLiteral("d"), QStringLiteral("Text")));
    made->appendChild(new SimpleValue<QString>(QStringLiteral("title"), QStringLiteral("ignored")));
    EXPECT_EQ(made->title(), QLatin1String("Text"));
    EXPECT_EQ(made->combinedId(), QLatin1String("airable://s/description/d"));
    DescriptionItem::Ptr plain(new DescriptionItem(QStringLiteral("s"), QStringLiteral("d")));
    EXPECT_TRUE(plain->title().isEmpty());
    EXPECT_FALSE(plain->browsable());
    EXPECT_FALSE(plain->playable());
}

TEST(ItemAccessors, trackAndAlbumReadTheirNestedArtistAndAlbum)
{
    auto track = parseAs<TrackItem>(R"({"id":["s","track",1],
        "artist":{"id":["s","artist","a7"],"title":"Artist","images":[{"url":"ai1"},{"url":"ai2"}]},
        "album":{"id":["s","album","b9"],"title":"Album","images":[{"url":"bi"}]}})");
    ASSERT_FALSE(track.isNull());
    EXPECT_EQ(track->artistId(), QLatin1String("a7"));
    EXPECT_EQ(track->artistTitle(), QLatin1String("Artist"));
    EXPECT_EQ(track->artistImageUrl(), QLatin1String("ai1"));
    EXPECT_EQ(track->albumId(), QLatin1String("b9"));
    EXPECT_EQ(track->albumTitle(), QLatin1String("Album"));
    EXPECT_EQ(track->albumImageUrl(), QLatin1String("bi"));

    auto album = parseAs<AlbumItem>(R"({"id":["s","album",1],"artist":{"id":["s","artist","a"],"title":"T"}})");
    ASSERT_FALSE(album.isNull());
    EXPECT_EQ(album->artistId(), QLatin1String("a"));
    EXPECT_EQ(album->artistTitle(), QLatin1String("T"));
    EXPECT_TRUE(album->artistImageUrl().isEmpty());

    // An artist that is no identified object, or an identified one of another type, is no artist.
    for (char const* json : {R"({"id":["s","track",1],"artist":{"title":"A"}})",
                             R"({"id":["s","track",1],"artist":{"id":["s","album",2],"title":"A"}})",
                             R"({"id":["s","track",1],"artist":"A"})"}) {
        SCOPED_TRACE(json);
        auto bare = parseAs<TrackItem>(json);
        EXPECT_TRUE(bare->artistId().isEmpty());
        EXPECT_TRUE(bare->artistTitle().isEmpty());
        EXPECT_TRUE(bare->artistImageUrl().isEmpty());
    }
}

TEST(ItemAccessors, radioFindsPlaceAndLanguageOneLevelDownUnlikeFeed)
{
    QByteArray const members = R"("place":{"id":["s","place","de"],"iso":"DE"},"language":{"id":["s","language","en"]}})";
    auto radio = parseAs<RadioItem>(R"({"id":["s","radio",1],)" + members);
    ASSERT_FALSE(radio.isNull());
    ASSERT_FALSE(radio->place().isNull());
    EXPECT_EQ(radio->place()->iso(), QLatin1String("DE"));
    EXPECT_EQ(radio->language()->name(), QLatin1String("en"));

    auto feed = parseAs<FeedContainer>(R"({"id":["s","feed",1],)" + members);
    ASSERT_FALSE(feed.isNull());
    EXPECT_TRUE(feed->place().isNull());
    EXPECT_TRUE(feed->language().isNull());
    // The feed takes the member itself, so only an object whose item id is the key is found.
    FeedContainer::Ptr built(new FeedContainer(QStringLiteral("s"), QStringLiteral("f")));
    built->appendChild(new PlaceItem(QStringLiteral("s"), QStringLiteral("place")));
    ASSERT_FALSE(built->place().isNull());
    EXPECT_EQ(built->place()->combinedId(), QLatin1String("airable://s/place/place"));
}

TEST(ItemAccessors, redirectAndStreamFindTheirRecordsByClass)
{
    auto redirect = parseAs<RedirectItem>(R"({"id":["s","redirect",1],"url":"real",
        "anykey":{"start":"u"},"events":{"stop":"v"},"encryption":{"type":"t"},
        "content":{"id":["s","track","t1"]}})");
    ASSERT_FALSE(redirect.isNull());
    ASSERT_FALSE(redirect->events().isNull());
    EXPECT_EQ(redirect->events()->stop(), QLatin1String("v"));
    EXPECT_EQ(redirect->encryption()->type(), QLatin1String("t"));
    ASSERT_FALSE(redirect->content().isNull());
    EXPECT_EQ(redirect->content()->name(), QLatin1String("t1"));

    auto bare = parseAs<RedirectItem>(R"({"id":["s","redirect",1],"content":{"title":"x"}})");
    EXPECT_TRUE(bare->events().isNull());
    EXPECT_TRUE(bare->encryption().isNull());
    EXPECT_TRUE(bare->content().isNull());

    auto stream = parseAs<StreamRadioItem>(R"({"id":["s","radio.stream",1],"codec":{"name":"aac","bitrate":128}})");
    ASSERT_FALSE(stream->codec().isNull());
    EXPECT_EQ(stream->codec()->bitrate(), 128);
    EXPECT_TRUE(parseAs<StreamRadioItem>(R"({"id":["s","radio.stream",1]})")->codec().isNull());
}

TEST(AccessTokenContainer, accessTimeRunsOnFromTheFirstRead)
{
    auto token = parseAs<AccessTokenContainer>(R"({"id":["s","accesstoken",1],"token":"abc","time":3000000000})");
    ASSERT_FALSE(token.isNull());
    unsigned int const first = token->accessTime();
    EXPECT_EQ(first, 3000000000u);
    QThread::msleep(1100);
    unsigned int const later = token->accessTime();
    EXPECT_GE(later - first, 1u);
    EXPECT_LE(later - first, 2u);

    auto timeless = parseAs<AccessTokenContainer>(R"({"id":["s","accesstoken",1],"time":"17"})");
    EXPECT_EQ(timeless->accessTime(), 0u);
    EXPECT_EQ(timeless->accessTime(), 0u);
}
