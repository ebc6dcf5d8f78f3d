#include "model_fixture.h"

#include "SimpleValue.h"

#include "ImagesContainer.h"
#include "ListingContainer.h"
#include "RadioItem.h"
#include "StreamItem.h"

#include <gtest/gtest.h>

using namespace airable;

namespace {

QByteArray const kListing = R"({"id":["airable","listing","top"],"title":"Top","content":{"entries":[)"
                            R"({"id":["airable","radio","r1"],"title":"Radio \u00e9ins",)"
                            R"("images":[{"url":"http://i/1-s","width":10},{"url":"http://i/1-l","width":600}],)"
                            R"("streams":[{"id":["airable","radio.stream","s1"],"url":"http://s/1"}]},)"
                            R"({"id":["airable","radio","r2"],"title":"Zwei"}]}})";

} // namespace

// Whatever part of an answer someone holds keeps the whole answer, and the
// answer holds nothing else: the worker's last listing is one answer's memory.
TEST(AirableArena, anyObjectHeldKeepsItsWholeAnswerAndNothingMore)
{
    auto listing = parseAs<ListingContainer>(kListing);
    ASSERT_TRUE(listing);
    AirableArena* const arena = listing->arena();
    ASSERT_NE(arena, nullptr);
    EXPECT_EQ(arena->refCount(), 1) << "the walk's own hold is gone";

    auto const items = listing->items();
    ASSERT_EQ(items.size(), 2);
    auto const radio = items.first().dynamicCast<RadioItem>();
    ASSERT_TRUE(radio);
    EXPECT_EQ(radio->arena(), arena);
    StreamItem::Ptr stream = radio->streams().value(0);
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->arena(), arena);

    // An image made on demand lives outside the answer and holds it.
    ImageItem::Ptr image = radio->firstChildOf<ImagesContainer>()->lastImage();
    ASSERT_TRUE(image);
    EXPECT_EQ(image->arena(), nullptr);

    int const held = arena->refCount();
    listing = ListingContainer::Ptr();
    EXPECT_EQ(arena->refCount(), held - 1);

    // The document and its other objects stay for what is still held (the
    // address sanitizer's run sees any read of freed memory here).
    EXPECT_EQ(stream->url(), QLatin1String("http://s/1"));
    EXPECT_EQ(image->src(), QLatin1String("http://i/1-l"));
    EXPECT_EQ(radio->title(), QString::fromUtf8("Radio \xc3\xa9ins"));
    EXPECT_EQ(items.last()->title(), QLatin1String("Zwei"));

    // A second answer is an arena of its own.
    auto const other = parseAs<ListingContainer>(kListing);
    ASSERT_TRUE(other);
    EXPECT_NE(other->arena(), arena);
    EXPECT_EQ(other->arena()->refCount(), 1);
}

// Objects may move between trees and the heap: every container keeps what
// it was given, in whatever memory that lives.
TEST(AirableArena, childrenFromElsewhereAreKeptByTheirNewContainer)
{
    auto first = parseAs<ListingContainer>(kListing);
    auto second = parseAs<ListingContainer>(R"({"id":["airable","listing","b"],"title":"B"})");
    ASSERT_TRUE(first && second);
    AirableArena* const firstArena = first->arena();

    // A container of one answer given an object of another.
    SimpleValue<QString>::Ptr const made(new SimpleValue<QString>(QStringLiteral("note"), QStringLiteral("from the heap")));
    second->appendChild(first->items().first());
    second->appendChild(made);
    int const before = firstArena->refCount();
    first = ListingContainer::Ptr();
    EXPECT_EQ(firstArena->refCount(), before - 1) << "the second answer still holds the first";

    EXPECT_EQ(second->stringValueOf(QLatin1String("note")), QLatin1String("from the heap"));
    EXPECT_EQ(second->childByNameAs<RadioItem>(QLatin1String("r1"))->title(), QString::fromUtf8("Radio \xc3\xa9ins"));

    // A container of the heap given objects of an answer.
    ListingContainer::Ptr const own(new ListingContainer(QStringLiteral("airable"), QStringLiteral("mine")));
    EXPECT_EQ(own->arena(), nullptr);
    for (AirableObject::Ptr const& child : second->children())
        own->appendChild(child);
    second = ListingContainer::Ptr();
    EXPECT_EQ(own->childByNameAs<RadioItem>(QLatin1String("r1"))->streams().size(), 1);
    EXPECT_EQ(own->stringValueOf(QLatin1String("title")), QLatin1String("B"));
    EXPECT_EQ(own->combinedId(), QLatin1String("airable://airable/listing/mine"));
}

// Texts stay bytes until they are read: keys as Latin-1, values and ids as
// UTF-8. A look-up by a key above ASCII must find the same member as a
// comparison of the decoded texts would.
TEST(AirableArena, textsReadAndCompareAsTheirDecodedWords)
{
    QByteArray const json = "{\"id\":[\"s\u00fcd\",\"radio\",\"caf\u00e9\"],"
                            "\"gr\xc3\xbc\xc3\x9f\":\"utf-8 key\",\"x\":\"\",\"t\":\"\xe2\x82\xac\"}";
    for (bool inDocument : {true, false}) {
        SCOPED_TRACE(inDocument);
        portable::utils::JsonParser parser;
        ASSERT_TRUE(parser.parse(json));
        AirableObjectFactory* const factory = AirableObjectFactory::instance();
        auto const radio = (inDocument ? factory->parseDocument(parser) : factory->parseJson(parser.root()->firstChild()))
                               .dynamicCast<RadioItem>();
        ASSERT_TRUE(radio);
        EXPECT_EQ(radio->stype(), QString::fromUtf8("s\xc3\xbc" "d"));
        EXPECT_EQ(radio->itype(), QLatin1String("radio"));
        EXPECT_EQ(radio->combinedId(), QString::fromUtf8("airable://s\xc3\xbc" "d/radio/caf\xc3\xa9"));
        EXPECT_TRUE(radio->hasName(QLatin1String("caf\xe9")));
        EXPECT_FALSE(radio->hasName(QLatin1String("caf\xc3\xa9")));
        EXPECT_EQ(radio->stringValueOf(QLatin1String("t")), QString::fromUtf8("\xe2\x82\xac"));
        EXPECT_FALSE(radio->stringValueOf(QLatin1String("x")).isNull());
        EXPECT_TRUE(radio->stringValueOf(QLatin1String("missing")).isNull());
        // A key is its bytes taken one by one, as the parser's handles read it.
        EXPECT_EQ(radio->stringValueOf(QLatin1String("gr\xc3\xbc\xc3\x9f")), QLatin1String("utf-8 key"));
        EXPECT_TRUE(radio->stringValueOf(QLatin1String("gr\xfc\xdf")).isNull());
    }

    // A text the code gives keeps every letter, and compares as its letters.
    QString const name = QString::fromUtf8("pr\xc3\xa9is");
    QString const value = QString::fromUtf8("\xe2\x82\xac 5");
    SimpleValue<QString>::Ptr const made(new SimpleValue<QString>(name, value));
    EXPECT_EQ(made->name(), name);
    EXPECT_EQ(made->value(), value);
    EXPECT_TRUE(made->hasName(QLatin1String("pr\xe9is")));
    EXPECT_FALSE(made->hasName(QLatin1String("pr\xc3\xa9is")));
}
