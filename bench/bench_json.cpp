// The module's parser against other parsers on the same documents.
//
// Every run of every parser starts from a fresh copy of the document in a
// buffer that is reused across iterations: the in-place parsers destroy their
// input, and giving all of them the same copy keeps the comparison fair. The
// copy is part of every figure.
#include "benchinput.h"

#include "JsonParser.h"
#include "json.h"

#include <benchmark/benchmark.h>
#include <rapidjson/document.h>
#include <simdjson.h>

#include <QJsonDocument>

#include <cstring>
#include <vector>

using benchdata::Input;

namespace {

constexpr unsigned long kBlockSize = 65536;

class Buffer
{
public:
    explicit Buffer(QByteArray const& source)
        : mSource(source)
        , mBytes(static_cast<std::size_t>(source.size()) + simdjson::SIMDJSON_PADDING, 0)
    {
    }

    // A fresh, zero-terminated copy of the document.
    char* refresh()
    {
        std::memcpy(mBytes.data(), mSource.constData(), size());
        mBytes[size()] = 0;
        return mBytes.data();
    }

    std::size_t size() const { return static_cast<std::size_t>(mSource.size()); }

private:
    QByteArray const& mSource;
    std::vector<char> mBytes;
};

void jsonParse(benchmark::State& state, Input which)
{
    Buffer buffer(benchdata::input(which));
    for (auto _ : state) {
        char* text = buffer.refresh();
        block_allocator allocator(kBlockSize);
        char* errorPos = nullptr;
        const char* errorDesc = nullptr;
        int errorLine = 0;
        json_value* root = json_parse(text, buffer.size(), &errorPos, &errorDesc, &errorLine, &allocator);
        if (!root) {
            state.SkipWithError("json_parse failed");
            break;
        }
        benchmark::DoNotOptimize(root);
    }
    finish(state, which);

    // What the tree costs beside the text it points into.
    char* text = buffer.refresh();
    block_allocator allocator(kBlockSize);
    char* errorPos = nullptr;
    const char* errorDesc = nullptr;
    int errorLine = 0;
    json_parse(text, buffer.size(), &errorPos, &errorDesc, &errorLine, &allocator);
    const double size = static_cast<double>(buffer.size());
    state.counters["nodes"] = allocator.bytesAllocated / sizeof(json_value);
    state.counters["node_B_per_B"] = allocator.bytesAllocated / size;
    state.counters["block_B_per_B"] = static_cast<double>(allocator.blockCount) * kBlockSize / size;
}

void jsonParserParse(benchmark::State& state, Input which)
{
    // JsonParser takes its own deep copy of the document, which stands in for
    // the buffer copy of the others.
    QByteArray const& source = benchdata::input(which);
    for (auto _ : state) {
        portable::utils::JsonParser parser;
        if (!parser.parse(source)) {
            state.SkipWithError("JsonParser::parse failed");
            break;
        }
        benchmark::DoNotOptimize(parser.root()->isValid());
    }
    finish(state, which);
}

void rapidjsonNormal(benchmark::State& state, Input which)
{
    Buffer buffer(benchdata::input(which));
    for (auto _ : state) {
        char* text = buffer.refresh();
        rapidjson::Document document;
        document.Parse(text, buffer.size());
        if (document.HasParseError()) {
            state.SkipWithError("rapidjson failed");
            break;
        }
        benchmark::DoNotOptimize(document.IsObject());
    }
    finish(state, which);
}

void rapidjsonInsitu(benchmark::State& state, Input which)
{
    Buffer buffer(benchdata::input(which));
    for (auto _ : state) {
        char* text = buffer.refresh();
        rapidjson::Document document;
        document.ParseInsitu(text);
        if (document.HasParseError()) {
            state.SkipWithError("rapidjson in-situ failed");
            break;
        }
        benchmark::DoNotOptimize(document.IsObject());
    }
    finish(state, which);
}

void simdjsonDom(benchmark::State& state, Input which)
{
    Buffer buffer(benchdata::input(which));
    // The parser is reused, as it is meant to be: its buffers are sized once.
    simdjson::dom::parser parser;
    for (auto _ : state) {
        char* text = buffer.refresh();
        simdjson::dom::element root;
        if (parser.parse(text, buffer.size(), false).get(root) != simdjson::SUCCESS) {
            state.SkipWithError("simdjson failed");
            break;
        }
        benchmark::DoNotOptimize(root);
    }
    finish(state, which);
}

void qjsonDocument(benchmark::State& state, Input which)
{
    QByteArray const& source = benchdata::input(which);
    QByteArray copy(source.size(), Qt::Uninitialized);
    for (auto _ : state) {
        std::memcpy(copy.data(), source.constData(), static_cast<std::size_t>(source.size()));
        QJsonParseError error;
        QJsonDocument document = QJsonDocument::fromJson(copy, &error);
        if (error.error != QJsonParseError::NoError) {
            state.SkipWithError("QJsonDocument failed");
            break;
        }
        benchmark::DoNotOptimize(document.isObject());
    }
    finish(state, which);
}

#define AIRABLE_JSON_BENCH(function)                                                                         \
    BENCHMARK_CAPTURE(function, listing_5k, Input::ListingSmall);                                           \
    BENCHMARK_CAPTURE(function, listing_100k, Input::ListingMedium);                                        \
    BENCHMARK_CAPTURE(function, listing_2m, Input::ListingLarge);                                           \
    BENCHMARK_CAPTURE(function, floats_100k, Input::FloatHeavy);                                            \
    BENCHMARK_CAPTURE(function, escapes_100k, Input::EscapeHeavy)

AIRABLE_JSON_BENCH(jsonParse);
AIRABLE_JSON_BENCH(jsonParserParse);
AIRABLE_JSON_BENCH(rapidjsonNormal);
AIRABLE_JSON_BENCH(rapidjsonInsitu);
AIRABLE_JSON_BENCH(simdjsonDom);
AIRABLE_JSON_BENCH(qjsonDocument);

} // namespace
