#include "model_fixture.h"

#include "logcapture.h"

#include "SimpleValue.h"

#include "FieldItem.h"
#include "OnAirItem.h"
#include "RadioItem.h"
#include "RedirectItem.h"
#include "StreamItem.h"
#include "TrackItem.h"

#include "CodecItem.h"
#include "CollectionItem.h"
#include "EncryptionItem.h"
#include "EventsItem.h"
#include "FieldsContainer.h"
#include "HeadersItem.h"
#include "ImagesContainer.h"
#include "OnAirContainer.h"
#include "PaginationContainer.h"
#include "PaginationItem.h"
#include "SkipItem.h"

#include <gtest/gtest.h>

using namespace airable;

namespace {

// The record under `key` of an object whose other members are `members`.
template <typename T>
portable::SmartPointer<T> recordIn(char const* members)
{
    auto owner = parseAs<ContainerWithId>(QByteArray(R"({"id":["s","x",1],)") + members + "}");
    return owner ? owner->firstChildOf<T>() : portable::SmartPointer<T>();
}

} // namespace

TEST(PaginationItem, readsPagesAndDefaultsEachMissingPart)
{
    auto full = recordIn<PaginationItem>(R"("pagination":{"next":"n","prev":"p",
        "pages":{"url":"u?p=:value:","current":2,"values":[1,2,"x",3],"replace":":value:"}})");
    ASSERT_FALSE(full.isNull());
    EXPECT_EQ(full->next(), QLatin1String("n"));
    EXPECT_EQ(full->prev(), QLatin1String("p"));
    EXPECT_EQ(full->url(), QLatin1String("u?p=:value:"));
    EXPECT_EQ(full->current(), 2);
    EXPECT_EQ(full->replace(), QLatin1String(":value:"));
    EXPECT_EQ(full->values(), AirableVector<int>({1, 2, 3}));

    struct Row
    {
        char const* members;
        int current;
        char const* url;
    } const table[] = {
        {R"("pagination":{})", -1, ""},
        {R"("pagination":{"pages":{"url":"u"}})", -1, "u"},
        {R"("pagination":{"pages":{"current":"2"}})", -1, ""},
        {R"("pagination":{"pages":{"current":0}})", 0, ""},
        {R"("pagination":{"pages":"u","current":3})", -1, ""},
    };
    for (Row const& row : table) {
        SCOPED_TRACE(row.members);
        auto pagination = recordIn<PaginationItem>(row.members);
        ASSERT_FALSE(pagination.isNull());
        EXPECT_EQ(pagination->current(), row.current);
        EXPECT_EQ(pagination->url(), QLatin1String(row.url));
        EXPECT_TRUE(pagination->next().isEmpty());
        EXPECT_TRUE(pagination->replace().isEmpty());
        EXPECT_TRUE(pagination->values().isEmpty());
    }
}

TEST(PaginationContainer, readsLikeThePaginationRecord)
{
    PaginationContainer::Ptr record(new PaginationContainer);
    EXPECT_EQ(record->name(), QLatin1String("pagination"));
    EXPECT_EQ(record->current(), -1);
    ContainerWithName::Ptr pages(new ContainerWithName(QStringLiteral("pages")));
    pages->appendChild(new SimpleValue<int>(QStringLiteral("current"), 4));
    pages->appendChild(new SimpleValue<QString>(QStringLiteral("url"), QStringLiteral("u")));
    record->appendChild(pages);
    EXPECT_EQ(record->current(), 4);
    EXPECT_EQ(record->url(), QLatin1String("u"));
}

TEST(EventsItem, hashHoldsOnlyEventsWithAUrl)
{
    EXPECT_EQ(EventsItem::startEvent, QLatin1String("start"));
    EXPECT_EQ(EventsItem::pauseEvent, QLatin1String("pause"));
    EXPECT_EQ(EventsItem::stopEvent, QLatin1String("stop"));
    EXPECT_EQ(EventsItem::errorEvent, QLatin1String("error"));

    auto one = recordIn<EventsItem>(R"("events":{"start":"u","pause":"","stop":5})");
    ASSERT_FALSE(one.isNull());
    QHash<QString, QString> const expected{{QStringLiteral("start"), QStringLiteral("u")}};
    EXPECT_EQ(one->events(), expected);
    EXPECT_TRUE(one->stop().isEmpty());

    auto all = recordIn<EventsItem>(R"("events":{"error":"e","stop":"s","pause":"p","start":"b"})");
    ASSERT_FALSE(all.isNull());
    EXPECT_EQ(all->events().size(), 4);
    EXPECT_EQ(all->events().value(EventsItem::errorEvent), QLatin1String("e"));
    EXPECT_EQ(all->pause(), QLatin1String("p"));
}

TEST(FieldsContainer, hiddenFieldsFormAnUnencodedQuery)
{
    struct Row
    {
        char const* fields;
        char const* query;
    } const table[] = {
        {R"([])", ""},
        {R"([{"id":["s","field","a"],"type":"text","value":"1"}])", ""},
        {R"([{"id":["s","field","a"],"type":"hidden","value":"x y&z"}])", "a=x y&z"},
        {R"([{"id":["s","field","a"],"type":"hidden","value":"1"},{"id":["s","field","b"],"type":"Hidden","value":"2"},
             {"id":["s","field","c"],"type":"hidden"}])",
         "a=1&c="},
    };
    for (Row const& row : table) {
        SCOPED_TRACE(row.fields);
        auto fields = recordIn<FieldsContainer>(QByteArray("\"fields\":") + row.fields);
        ASSERT_FALSE(fields.isNull());
        EXPECT_EQ(fields->hiddenFields(), QLatin1String(row.query));
    }
}

TEST(HeadersItem, listsKeepOnlyStringsInOrder)
{
    auto headers = recordIn<HeadersItem>(R"("headers":{"key":["A: b",1,"C: d",null],"audio":"x","manifest":[]})");
    ASSERT_FALSE(headers.isNull());
    EXPECT_EQ(headers->key(), AirableVector<QString>({"A: b", "C: d"}));
    EXPECT_TRUE(headers->audio().isEmpty());
    EXPECT_TRUE(headers->manifest().isEmpty());
    EXPECT_TRUE(headers->genericItems(QStringLiteral("missing")).isEmpty());

    auto encryption = recordIn<EncryptionItem>(R"("encryption":{"type":"amazonMusic","headers":{"key":["K: v"]}})");
    ASSERT_FALSE(encryption.isNull());
    EXPECT_EQ(encryption->type(), QLatin1String("amazonMusic"));
    ASSERT_FALSE(encryption->headers().isNull());
    EXPECT_EQ(encryption->headers()->key(), AirableVector<QString>({"K: v"}));
    EXPECT_TRUE(recordIn<EncryptionItem>(R"("encryption":{})")->headers().isNull());
}

TEST(ImagesContainer, eachPlainElementBecomesAnImage)
{
    auto images = recordIn<ImagesContainer>(R"("images":[{"url":"a","width":10},"skipped",{"url":"b","height":"7"}])");
    ASSERT_FALSE(images.isNull());
    AirableVector<ImageItem::Ptr> const list = images->images();
    ASSERT_EQ(list.size(), 2);
    EXPECT_EQ(list.at(0)->src(), QLatin1String("a"));
    EXPECT_EQ(list.at(0)->width(), 10);
    EXPECT_EQ(list.at(1)->src(), QLatin1String("b"));
    EXPECT_EQ(list.at(1)->width(), 0);
    for (ImageItem::Ptr const& image : list)
        EXPECT_EQ(image->height(), 0);
}

TEST(NamedRecords, intAndStringAccessorsDefaultOnMissingOrOtherTypes)
{
    auto codec = recordIn<CodecItem>(R"("codec":{"name":"mp3","bitrate":320})");
    ASSERT_FALSE(codec.isNull());
    EXPECT_EQ(codec->codecName(), QLatin1String("mp3"));
    EXPECT_EQ(codec->bitrate(), 320);

    auto odd = recordIn<CodecItem>(R"("codec":{"name":3,"bitrate":320.5})");
    ASSERT_FALSE(odd.isNull());
    EXPECT_TRUE(odd->codecName().isEmpty());
    EXPECT_EQ(odd->bitrate(), 0);
    EXPECT_EQ(recordIn<CodecItem>(R"("codec":{"bitrate":"320"})")->bitrate(), 0);

    auto collection = recordIn<CollectionItem>(R"("collection":{"size":100,"limit":20,"offset":true})");
    ASSERT_FALSE(collection.isNull());
    EXPECT_EQ(collection->size(), 100);
    EXPECT_EQ(collection->limit(), 20);
    EXPECT_EQ(collection->offset(), 0);
}

TEST(SkipItem, reportsEachMissingFieldAtErrorLevel)
{
    LogCapture capture;
    auto skip = recordIn<SkipItem>(R"("skip":{"available":3,"status":"s","url":"u"})");
    ASSERT_FALSE(skip.isNull());
    EXPECT_EQ(skip->available(), 3);
    EXPECT_EQ(skip->statusUrl(), QLatin1String("s"));
    EXPECT_EQ(skip->skipUrl(), QLatin1String("u"));
    EXPECT_TRUE(capture.lines(log4cplus::ERROR_LOG_LEVEL).isEmpty());

    auto empty = recordIn<SkipItem>(R"("skip":{"available":"3"})");
    ASSERT_FALSE(empty.isNull());
    EXPECT_EQ(empty->available(), 0);
    EXPECT_TRUE(empty->statusUrl().isEmpty());
    EXPECT_TRUE(empty->skipUrl().isEmpty());
    EXPECT_EQ(capture.lines(log4cplus::ERROR_LOG_LEVEL),
              QStringList({"missing field 'available'!", "missing field 'status'", "missing field 'status'"}));
}

TEST(OnAirContainer, cloudDataNeverYieldsOnAirItems)
{
    auto radio = parseAs<RadioItem>(R"({"id":["s","radio",1],"onair":[{"artist":"a"},{"id":["s","track",2]}]})");
    ASSERT_FALSE(radio.isNull());
    ASSERT_FALSE(radio->firstChildOf<OnAirContainer>().isNull());
    EXPECT_TRUE(radio->onAirItems().isEmpty());

    OnAirContainer::Ptr container(new OnAirContainer);
    OnAirItem::Ptr item(new OnAirItem);
    item->appendChild(new TrackItem(QStringLiteral("s"), QStringLiteral("t")));
    container->appendChild(item);
    ASSERT_EQ(container->items().size(), 1);
    EXPECT_TRUE(container->items().first()->artist().isNull());
    EXPECT_EQ(container->items().first()->track()->name(), QLatin1String("t"));
}

TEST(NamedRecords, createKeepsTheFixedKey)
{
    ContainerWithName::Ptr const prototypes[] = {new PaginationItem, new SkipItem, new HeadersItem, new ImageItem};
    for (ContainerWithName::Ptr const& prototype : prototypes) {
        ContainerWithName::Ptr made = prototype->create(QStringLiteral("other"));
        EXPECT_EQ(typeid(*made), typeid(*prototype));
        EXPECT_EQ(made->name(), prototype->name());
    }
    ContainerWithName::Ptr generic(new ContainerWithName(QStringLiteral("a")));
    EXPECT_EQ(generic->create(QStringLiteral("b"))->name(), QLatin1String("b"));
}
