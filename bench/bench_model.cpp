// The whole road of a cloud answer, bytes to typed objects, against
// QJsonDocument::fromJson alone; and a row walk over the typed listing against
// the same walk over a QJsonDocument.
#include "benchinput.h"

#include "AirableObjectFactory.h"
#include "ContentItem.h"
#include "ImagesContainer.h"
#include "JsonParser.h"
#include "ListingContainer.h"

#include <benchmark/benchmark.h>

#include "Portable_BlockPool.h"

#include <malloc.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using benchdata::Input;

namespace {

airable::AirableObject::Ptr buildTree(QByteArray const& source)
{
    portable::utils::JsonParser parser;
    if (!parser.parse(source))
        return airable::AirableObject::Ptr();
    return airable::AirableObjectFactory::instance()->parseDocument(parser);
}

void modelWholeRoad(benchmark::State& state, Input which)
{
    QByteArray const& source = benchdata::input(which);
    for (auto _ : state) {
        airable::AirableObject::Ptr tree = buildTree(source);
        if (!tree) {
            state.SkipWithError("no object");
            break;
        }
        benchmark::DoNotOptimize(tree.get());
    }
    finish(state, which);
}

void modelQJsonFromJson(benchmark::State& state, Input which)
{
    QByteArray const& source = benchdata::input(which);
    for (auto _ : state) {
        QJsonDocument document = QJsonDocument::fromJson(source);
        if (document.isNull()) {
            state.SkipWithError("QJsonDocument failed");
            break;
        }
        benchmark::DoNotOptimize(document.isObject());
    }
    finish(state, which);
}

// What a tree holds once its parse is gone, per byte of the answer: the heap
// it takes with nothing recycled, so that every byte it holds is counted.
void modelTreeMemory(benchmark::State& state, Input which)
{
    QByteArray const& source = benchdata::input(which);
    std::size_t const limit = portable::blockpool::keptBytesLimit();
    portable::blockpool::setKeptBytesLimit(0);
    // The kept blocks go once they are taken and released under the new
    // limit: the largest answer takes them all.
    buildTree(benchdata::input(Input::ListingLarge));
    double bytesPerByte = 0;
    // Large blocks are mapped apart from the heap, and count as well.
    auto inUse = [] {
        struct mallinfo2 const info = mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    for (auto _ : state) {
        std::size_t const before = inUse();
        airable::AirableObject::Ptr tree = buildTree(source);
        std::size_t const held = inUse() - before;
        bytesPerByte = double(held) / double(source.size());
        benchmark::DoNotOptimize(tree.get());
    }
    portable::blockpool::setKeptBytesLimit(limit);
    state.counters["tree_B_per_B"] = bytesPerByte;
    state.SetLabel(benchdata::inputName(which));
}

// What a page of rows reads of each item: title, url, the image list.
void modelAccessorWalk(benchmark::State& state, Input which)
{
    auto listing = buildTree(benchdata::input(which)).dynamicCast<airable::ListingContainer>();
    if (!listing) {
        state.SkipWithError("no listing");
        return;
    }
    int rows = 0;
    for (auto _ : state) {
        rows = 0;
        for (airable::ContentItem::Ptr const& item : listing->items()) {
            benchmark::DoNotOptimize(item->title().size());
            benchmark::DoNotOptimize(item->url().size());
            if (auto images = item->firstChildOf<airable::ImagesContainer>()) {
                for (airable::ImageItem::Ptr const& image : images->images())
                    benchmark::DoNotOptimize(image->src().size());
            }
            ++rows;
        }
    }
    state.counters["rows"] = rows;
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * rows);
    state.SetLabel(benchdata::inputName(which));
}

void modelQJsonWalk(benchmark::State& state, Input which)
{
    QJsonDocument const document = QJsonDocument::fromJson(benchdata::input(which));
    int rows = 0;
    for (auto _ : state) {
        rows = 0;
        QJsonArray const entries =
            document.object().value(QLatin1String("content")).toObject().value(QLatin1String("entries")).toArray();
        for (QJsonValue const& entry : entries) {
            QJsonObject const item = entry.toObject();
            if (!item.contains(QLatin1String("id")))
                continue;
            benchmark::DoNotOptimize(item.value(QLatin1String("title")).toString().size());
            benchmark::DoNotOptimize(item.value(QLatin1String("url")).toString().size());
            for (QJsonValue const& image : item.value(QLatin1String("images")).toArray())
                benchmark::DoNotOptimize(image.toObject().value(QLatin1String("url")).toString().size());
            ++rows;
        }
    }
    state.counters["rows"] = rows;
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * rows);
    state.SetLabel(benchdata::inputName(which));
}

#define AIRABLE_MODEL_BENCH(function)                                                                        \
    BENCHMARK_CAPTURE(function, listing_5k, Input::ListingSmall);                                           \
    BENCHMARK_CAPTURE(function, listing_100k, Input::ListingMedium);                                        \
    BENCHMARK_CAPTURE(function, listing_2m, Input::ListingLarge)

AIRABLE_MODEL_BENCH(modelWholeRoad);
AIRABLE_MODEL_BENCH(modelQJsonFromJson);
AIRABLE_MODEL_BENCH(modelAccessorWalk);
BENCHMARK_CAPTURE(modelTreeMemory, listing_5k, Input::ListingSmall)->Iterations(1);
BENCHMARK_CAPTURE(modelTreeMemory, listing_100k, Input::ListingMedium)->Iterations(1);
BENCHMARK_CAPTURE(modelTreeMemory, listing_2m, Input::ListingLarge)->Iterations(1);
AIRABLE_MODEL_BENCH(modelQJsonWalk);

} // namespace
