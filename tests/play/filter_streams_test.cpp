#include "../model/model_fixture.h"
#include "TrackItem.h"
#include "filterstreams.h"

#include <gtest/gtest.h>

namespace {

QVector<airable::StreamItem::Ptr> streamsOf(QList<int> const& bitrates)
{
    QStringList streams;
    for (int i = 0; i < bitrates.size(); ++i)
        streams << QStringLiteral(R"({"id": ["qobuz", "radio.stream", "s%1"], "url": "http://c/s/%1",
                                      "codec": {"name": "flac", "bitrate": %2}})")
                       .arg(i)
                       .arg(bitrates[i]);
    QByteArray const json = QStringLiteral(R"({"id": ["qobuz", "track", "t"], "title": "T", "streams": [%1]})")
                                .arg(streams.join(QLatin1Char(',')))
                                .toUtf8();
    auto const track = parseAs<airable::TrackItem>(json);
    return track ? track->streams() : QVector<airable::StreamItem::Ptr>();
}

QList<int> bitratesOf(QVector<airable::StreamItem::Ptr> const& streams)
{
    QList<int> out;
    for (auto const& s : streams)
        out << s->codec()->bitrate();
    return out;
}

struct FilterCase
{
    char const* name;
    QList<int> bitrates;
    int limit;
    QList<int> kept;
};

} // namespace

TEST(FilterStreams, keepsWhatTheLimitAllowsBestFirstAndNeverNothing)
{
    FilterCase const cases[] = {
        {"at or below the limit, the one at it included", {320, 192, 128}, 192, {192, 128}},
        {"all above: the lowest stays", {320, 192}, 96, {192}},
        {"all below: order by bitrate, not by input", {128, 320}, 1000, {320, 128}},
        {"a single stream stays whatever its bitrate", {320}, 128, {320}},
        {"equal bitrates both stay", {128, 320, 128}, 128, {128, 128}},
        {"nothing in, nothing out", {}, 192, {}},
    };
    for (auto const& c : cases) {
        auto streams = streamsOf(c.bitrates);
        ASSERT_EQ(streams.size(), c.bitrates.size()) << c.name;
        filterStreams(&streams, TarnAirableStreamBitrate::Enum(c.limit));
        EXPECT_EQ(bitratesOf(streams), c.kept) << c.name;
    }
}
