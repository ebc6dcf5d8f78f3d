#include "model_fixture.h"

#include "SimpleValue.h"

#include "AccessTokenContainer.h"
#include "ActionItem.h"
#include "AirableFeeds.h"
#include "AirableRadios.h"
#include "AlbumItem.h"
#include "ArtistItem.h"
#include "ButtonItem.h"
#include "DescriptionItem.h"
#include "DirectoryItem.h"
#include "EpisodeItem.h"
#include "ErrorItem.h"
#include "FeedContainer.h"
#include "FieldItem.h"
#include "FilterItem.h"
#include "FormItem.h"
#include "GenreItem.h"
#include "LanguageItem.h"
#include "MessageItem.h"
#include "PlaceItem.h"
#include "PlaylistItem.h"
#include "ProgramItem.h"
#include "RadioItem.h"
#include "RedirectItem.h"
#include "ServiceItem.h"
#include "StreamFeedItem.h"
#include "StreamRadioItem.h"
#include "TrackItem.h"

#include "ButtonsContainer.h"
#include "CodecItem.h"
#include "CollectionContainer.h"
#include "CollectionItem.h"
#include "ContentContainer.h"
#include "EncryptionItem.h"
#include "EntriesContainer.h"
#include "EventsItem.h"
#include "FieldsContainer.h"
#include "HeadersItem.h"
#include "ImagesContainer.h"
#include "OnAirContainer.h"
#include "PaginationContainer.h"
#include "PaginationItem.h"
#include "SkipItem.h"
#include "StreamsContainer.h"

#include <gtest/gtest.h>

#include <functional>

using namespace airable;

namespace {

template <typename T>
bool is(AirableObject::Ptr const& object)
{
    return dynamic_cast<T*>(object.get()) != nullptr;
}

QByteArray objectOfType(QString const& itype)
{
    return QStringLiteral("{\"id\":[\"s\",\"%1\",\"x\"]}").arg(itype).toUtf8();
}

struct TypeWord
{
    char const* itype;
    std::function<bool(AirableObject::Ptr const&)> isExpected;
};

} // namespace

TEST(AirableObjectFactory, everyRegisteredTypeWordMakesItsClassAndKeepsTheWord)
{
    TypeWord const table[] = {
        {"accesstoken", is<AccessTokenContainer>}, {"directory", is<DirectoryItem>},
        {"listing", is<ListingContainer>},         {"feed", is<FeedContainer>},
        {"service", is<ServiceItem>},              {"action", is<ActionItem>},
        {"radio", is<RadioItem>},                  {"place", is<PlaceItem>},
        {"artist", is<ArtistItem>},                {"track", is<TrackItem>},
        {"redirect", is<RedirectItem>},            {"playlist", is<PlaylistItem>},
        {"language", is<LanguageItem>},            {"feed.episode", is<EpisodeItem>},
        {"genre", is<GenreItem>},                  {"radio.stream", is<StreamRadioItem>},
        {"feed.stream", is<StreamFeedItem>},       {"error", is<ErrorItem>},
        {"airable.radios", is<AirableRadios>},     {"airable.feeds", is<AirableFeeds>},
        {"form", is<FormItem>},                    {"field", is<FieldItem>},
        {"button", is<ButtonItem>},                {"album", is<AlbumItem>},
        {"filter", is<FilterItem>},                {"message", is<MessageItem>},
        {"program", is<ProgramItem>},
    };
    for (TypeWord const& row : table) {
        SCOPED_TRACE(row.itype);
        auto object = parseAs<ContainerWithId>(objectOfType(QLatin1String(row.itype)));
        ASSERT_FALSE(object.isNull());
        EXPECT_TRUE(row.isExpected(object));
        EXPECT_EQ(object->itype(), QLatin1String(row.itype));
        EXPECT_EQ(object->stype(), QLatin1String("s"));
        EXPECT_EQ(object->name(), QLatin1String("x"));
    }
}

TEST(AirableObjectFactory, unknownAndUnregisteredTypeWordsBecomeListings)
{
    for (char const* itype : {"nosuchtype", "stream", "description", "Radio", ""}) {
        SCOPED_TRACE(itype);
        auto object = parseAs<ContainerWithId>(objectOfType(QLatin1String(itype)));
        ASSERT_FALSE(object.isNull());
        EXPECT_EQ(typeid(*object), typeid(ListingContainer));
        EXPECT_EQ(object->itype(), QLatin1String("listing"));
        auto listing = object.dynamicCast<ListingContainer>();
        EXPECT_TRUE(listing->browsable());
        EXPECT_TRUE(listing->containerPlayable());
    }
}

TEST(AirableObjectFactory, createContainerSharesPrototypesAcrossServices)
{
    AirableObjectFactory* factory = AirableObjectFactory::instance();
    EXPECT_EQ(factory->createKey(QStringLiteral("deezer"), QStringLiteral("track")), QLatin1String("track"));
    auto a = factory->createContainer(QStringLiteral("deezer"), QStringLiteral("track"), QStringLiteral("1"));
    auto b = factory->createContainer(QStringLiteral("qobuz"), QStringLiteral("track"), QStringLiteral("2"));
    ASSERT_TRUE(is<TrackItem>(a) && is<TrackItem>(b));
    EXPECT_NE(a.get(), b.get());
    EXPECT_EQ(a->combinedId(), QLatin1String("airable://deezer/track/1"));
    EXPECT_EQ(b->combinedId(), QLatin1String("airable://qobuz/track/2"));
}

TEST(AirableObjectFactory, theItemIdIsTakenFromTheThirdElementByItsType)
{
    struct Row
    {
        char const* json;
        char const* id;
    } const table[] = {
        {R"({"id":["airable","radio",42]})", "42"},
        {R"({"id":["airable","radio",-7]})", "-7"},
        {R"({"id":["airable","radio",9000000000]})", "9000000000"},
        {R"({"id":["airable","radio","abc"]})", "abc"},
        {R"({"id":["airable","radio",true]})", "true"},
        {R"({"id":["airable","radio",false]})", "false"},
        {R"({"id":["airable","radio",1.5]})", ""},
        {R"({"id":["airable","radio",null]})", ""},
        {R"({"id":["airable","radio",{"a":1}]})", ""},
        {R"({"id":["airable","radio","abc","ignored",5]})", "abc"},
    };
    for (Row const& row : table) {
        SCOPED_TRACE(row.json);
        auto object = parseAs<ContainerWithId>(row.json);
        ASSERT_FALSE(object.isNull());
        EXPECT_EQ(object->name(), QLatin1String(row.id));
    }
    EXPECT_EQ(parseAs<ContainerWithId>(R"({"id":["airable","radio",42]})")->combinedId(),
              QLatin1String("airable://airable/radio/42"));
    EXPECT_EQ(parseAs<ContainerWithId>(R"({"id":["a","radio",42]})")->attributes(),
              QLatin1String("itype=\"radio\" stype=\"a\" itemid=\"42\""));
}

TEST(AirableObjectFactory, documentsWithoutAUsableRootIdGiveNull)
{
    for (char const* json : {R"({"id":["s","t"]})", R"({"id":"abc"})", R"({"id":{"a":1}})", R"({"id":null})",
                             R"({"title":"x"})", R"({})", R"([{"id":["s","track",1]}])",
                             R"({"title":"x","id":["s","t"]})", R"({"outer":{"id":["s","track",1]}})"}) {
        SCOPED_TRACE(json);
        EXPECT_TRUE(parseDocument(json).isNull());
    }
}

TEST(AirableObjectFactory, thePositionOfIdChangesOnlyTheOrderOfChildren)
{
    auto behind = parseAs<RadioItem>(R"({"id":["airable","radio",42],"title":"x","slogan":"y"})");
    auto inFront = parseAs<RadioItem>(R"({"title":"x","id":["airable","radio",42],"slogan":"y"})");
    ASSERT_FALSE(behind.isNull());
    ASSERT_FALSE(inFront.isNull());
    EXPECT_EQ(inFront->combinedId(), behind->combinedId());
    EXPECT_EQ(inFront->title(), QLatin1String("x"));
    EXPECT_EQ(inFront->slogan(), QLatin1String("y"));

    auto names = [](AirableContainer::Ptr const& container) {
        QStringList result;
        for (AirableObject::Ptr const& child : container->children())
            result << child->name();
        return result;
    };
    EXPECT_EQ(names(behind), QStringList({"title", "slogan"}));
    // Members behind "id" come first; those in front follow.
    EXPECT_EQ(names(inFront), QStringList({"slogan", "title"}));
}

TEST(AirableObjectFactory, membersInFrontOfANestedIdAlsoStayInTheEnclosingContainer)
{
    auto track = parseAs<TrackItem>(
        R"({"id":["s","track",1],"artist":{"title":"A","id":["s","artist",7],"x":1}})");
    ASSERT_FALSE(track.isNull());
    auto artistMember = track->childByNameAs<ContainerWithName>(QLatin1String("artist"));
    ASSERT_FALSE(artistMember.isNull());
    AirableVector<AirableObject::Ptr> const strays = artistMember->children();
    ASSERT_EQ(strays.size(), 2);
    EXPECT_EQ(strays.at(0)->name(), QLatin1String("title"));
    auto artist = strays.at(1).dynamicCast<ArtistItem>();
    ASSERT_FALSE(artist.isNull());
    // The stray member is shared by both owners.
    EXPECT_EQ(artist->children().size(), 2);
    EXPECT_EQ(artist->children().at(1).get(), strays.at(0).get());
    EXPECT_EQ(artist->title(), QLatin1String("A"));
    EXPECT_EQ(track->artistTitle(), QLatin1String("A"));
    EXPECT_EQ(track->artistId(), QLatin1String("7"));
}

TEST(AirableObjectFactory, scalarMembersBecomeTypedValues)
{
    auto object = parseAs<ContainerWithId>(
        R"({"id":["s","x",1],"s":"t","i":12,"count":3000000000,"b":true,"f":2.5,"n":null,"o":{},"a":[]})");
    ASSERT_FALSE(object.isNull());
    auto valueOf = [&](char const* key) { return object->childByName(QLatin1String(key)); };
    EXPECT_EQ(valueOf("s").dynamicCast<SimpleValue<QString>>()->value(), QLatin1String("t"));
    EXPECT_EQ(valueOf("i").dynamicCast<SimpleValue<int>>()->value(), 12);
    EXPECT_EQ(valueOf("count").dynamicCast<SimpleValue<int>>()->value(), static_cast<int>(3000000000LL));
    EXPECT_EQ(valueOf("count").dynamicCast<SimpleValue<int>>()->value(), -1294967296);
    EXPECT_TRUE(valueOf("b").dynamicCast<SimpleValue<bool>>()->value());
    EXPECT_FLOAT_EQ(valueOf("f").dynamicCast<SimpleValue<float>>()->value(), 2.5f);
    for (char const* key : {"n", "o", "a"}) {
        SCOPED_TRACE(key);
        auto container = valueOf(key);
        ASSERT_EQ(typeid(*container), typeid(ContainerWithName));
        EXPECT_TRUE(container.dynamicCast<ContainerWithName>()->children().isEmpty());
    }
}

TEST(AirableObjectFactory, registeredKeysMakeTheirRecordWhateverTheValue)
{
    struct Row
    {
        char const* key;
        std::function<bool(AirableObject::Ptr const&)> isExpected;
    } const table[] = {
        {"pagination", is<PaginationItem>}, {"collection", is<CollectionItem>}, {"codec", is<CodecItem>},
        {"content", is<ContentContainer>},  {"entries", is<EntriesContainer>},  {"images", is<ImagesContainer>},
        {"onair", is<OnAirContainer>},      {"events", is<EventsItem>},         {"buttons", is<ButtonsContainer>},
        {"fields", is<FieldsContainer>},    {"skip", is<SkipItem>},             {"streams", is<StreamsContainer>},
        {"encryption", is<EncryptionItem>}, {"headers", is<HeadersItem>},
    };
    for (Row const& row : table) {
        for (char const* value : {"{\"k\":1}", "[1]", "\"text\"", "null"}) {
            SCOPED_TRACE(std::string(row.key) + ":" + value);
            auto object = parseAs<ContainerWithId>(
                QStringLiteral("{\"id\":[\"s\",\"x\",1],\"%1\":%2}").arg(row.key, value).toUtf8());
            ASSERT_FALSE(object.isNull());
            auto member = object->childByName(QLatin1String(row.key));
            ASSERT_FALSE(member.isNull());
            EXPECT_TRUE(row.isExpected(member));
            EXPECT_FALSE(is<PaginationContainer>(member) || is<CollectionContainer>(member));
            bool const container = value[0] == '{' || value[0] == '[';
            EXPECT_EQ(member.dynamicCast<AirableContainer>()->children().size(), container ? 1 : 0);
        }
    }
}

TEST(AirableObjectFactory, identifiedArrayElementsJoinTheArrayAndPlainOnesAreAnonymous)
{
    auto listing = parseAs<ListingContainer>(R"({"id":["s","listing",1],"content":{"entries":[
        {"id":["s","track",1],"title":"one"},
        {"title":"plain"},
        {"id":["s","radio",2]},
        5
    ]}})");
    ASSERT_FALSE(listing.isNull());
    auto entries = ContentList::entriesOf(*listing);
    ASSERT_FALSE(entries.isNull());
    AirableVector<AirableObject::Ptr> const children = entries->children();
    ASSERT_EQ(children.size(), 4);
    EXPECT_TRUE(is<TrackItem>(children.at(0)));
    EXPECT_EQ(typeid(*children.at(1)), typeid(ContainerWithName));
    EXPECT_EQ(children.at(1)->name(), QString());
    EXPECT_TRUE(is<RadioItem>(children.at(2)));
    EXPECT_TRUE(is<SimpleValue<int>>(children.at(3)));
    EXPECT_EQ(listing->items().size(), 2);
}

TEST(AirableObjectFactory, anIdInsideAPlainMemberMakesTheObjectItsChild)
{
    auto track = parseAs<TrackItem>(R"({"id":["s","track",1],"artist":{"id":["s","artist",7],"title":"A"}})");
    ASSERT_FALSE(track.isNull());
    ASSERT_EQ(track->children().size(), 1);
    auto member = track->children().first();
    EXPECT_EQ(typeid(*member), typeid(ContainerWithName));
    EXPECT_EQ(member->name(), QLatin1String("artist"));
    auto children = member.dynamicCast<ContainerWithName>()->children();
    ASSERT_EQ(children.size(), 1);
    EXPECT_TRUE(is<ArtistItem>(children.first()));
}

// Both ways of building a tree: values copied out of the parse, and values
// kept in the parser's document, which the tree then shares. Either tree
// outlives its parser and the parser's next document, and reads the same.
TEST(AirableObjectFactory, theTreeOutlivesTheParserAndItsNextDocument)
{
    QByteArray const json = R"({"id":["s","track","t\u00e9"],"title":"caf\u00e9 \"q\" \/ ü",)"
                            R"("url":"a\u0000b","description":"","slogan":"x"})";
    QStringList read[2];
    for (int inDocument = 0; inDocument < 2; ++inDocument) {
        ContainerWithId::Ptr object;
        {
            portable::utils::JsonParser parser;
            ASSERT_TRUE(parser.parse(json));
            AirableObjectFactory* const factory = AirableObjectFactory::instance();
            object = (inDocument ? factory->parseDocument(parser) : factory->parseJson(parser.root()->firstChild()))
                         .dynamicCast<ContainerWithId>();
            ASSERT_TRUE(parser.parse(R"({"title":"another document in the parser's place, as long as the first one"})"));
        }
        auto track = object.dynamicCast<TrackItem>();
        ASSERT_FALSE(track.isNull()) << inDocument;
        EXPECT_EQ(track->name(), QString::fromUtf8("t\xc3\xa9"));
        EXPECT_EQ(track->title(), QString::fromUtf8("caf\xc3\xa9 \"q\" / \xc3\xbc"));
        EXPECT_EQ(track->url(), QLatin1String("a")) << "an escaped zero ends a value";
        EXPECT_EQ(track->title(), track->title()) << "a value reads the same every time";
        for (QString const& value : track->stringValues())
            read[inDocument] << value << QString::number(value.isNull());
    }
    EXPECT_EQ(read[0], read[1]);
    EXPECT_EQ(read[1].size(), 8);
}

TEST(AirableObjectFactory, absurdNestingIsCutInsteadOfExhaustingTheStack)
{
    int const levels = 200000;
    QByteArray json = R"({"id":["s","track",1],"deep":)";
    json += QByteArray(levels, '[') + QByteArray(levels, ']') + ",\"title\":\"t\"}";
    auto track = parseAs<TrackItem>(json);
    ASSERT_FALSE(track.isNull());
    EXPECT_EQ(track->title(), QLatin1String("t"));
    int depth = 0;
    for (auto level = track->childByNameAs<AirableContainer>(QLatin1String("deep")); level;
         level = level->firstChildOf<AirableContainer>())
        ++depth;
    EXPECT_GT(depth, 100);
    EXPECT_LT(depth, 1000);
}

TEST(AirableObjectFactory, answersWithMoreDistinctKeysThanItKeepsAreReadAlike)
{
    QByteArray json = R"({"id":["s","track",1])";
    for (int i = 0; i < 3000; ++i)
        json += ",\"k" + QByteArray::number(i) + "\":" + QByteArray::number(i);
    json += R"(,"pagination":{"next":"n"},"title":"t","id2":[{"id":["s","t7",1]}]})";
    auto track = parseAs<TrackItem>(json);
    ASSERT_FALSE(track.isNull());
    ASSERT_EQ(track->children().size(), 3003);
    for (int i : {0, 1500, 2999}) {
        auto value = track->childByName(QStringLiteral("k%1").arg(i)).dynamicCast<SimpleValue<int>>();
        ASSERT_FALSE(value.isNull()) << i;
        EXPECT_EQ(value->value(), i);
    }
    EXPECT_EQ(track->title(), QLatin1String("t"));
    EXPECT_TRUE(is<PaginationItem>(track->childByName(QLatin1String("pagination"))));
    EXPECT_EQ(track->childByName(QLatin1String("id2")).dynamicCast<AirableContainer>()->children().size(), 1);
}
