#include "generator.h"

#include <cstdint>

namespace benchdata {

namespace {

// A small linear congruential generator, so that every run sees the same text.
class Random
{
public:
    explicit Random(std::uint32_t seed) : mState(seed) {}

    std::uint32_t next()
    {
        mState = mState * 1664525u + 1013904223u;
        return mState >> 8;
    }
    int below(int n) { return static_cast<int>(next() % static_cast<std::uint32_t>(n)); }

private:
    std::uint32_t mState;
};

const char* const kWords[] = {
    "night", "river", "echo", "velvet", "morning", "static", "golden", "paper", "signal", "harbour",
    "winter", "neon", "glass", "orbit", "silent", "copper", "garden", "shadow", "fever", "lantern",
};
// Raw UTF-8, as the cloud sends most non-ASCII text.
const char* const kForeignWords[] = {
    "caf\xC3\xA9", "M\xC3\xBC" "ller", "\xC3\xA9t\xC3\xA9", "\xE6\x97\xA5\xE6\x9C\xAC",
    "S\xC3\xA3o Paulo", "\xD0\x9C\xD0\xBE\xD1\x81\xD0\xBA\xD0\xB2\xD0\xB0",
};
const char* const kServices[] = {"airable", "deezer", "qobuz", "napster", "tidal", "highresaudio", "amazon"};
const char* const kCodecs[] = {"mp3", "aac", "flac", "ogg"};
const int kBitrates[] = {64, 128, 192, 256, 320, 1411};
const char* const kGenres[] = {"Jazz", "Rock", "Pop", "Klassik", "Electronic", "Chanson", "Hip-Hop"};

class Writer
{
public:
    explicit Writer(std::uint32_t seed) : mRandom(seed) {}

    QByteArray& out() { return mOut; }
    Random& random() { return mRandom; }

    void raw(const char* text) { mOut += text; }
    void number(long long value) { mOut += QByteArray::number(value); }
    void real(double value, int decimals) { mOut += QByteArray::number(value, 'f', decimals); }

    void key(const char* name)
    {
        mOut += '"';
        mOut += name;
        mOut += "\":";
    }

    void id(const char* service, const char* type, QByteArray const& itemId)
    {
        key("id");
        mOut += "[\"";
        mOut += service;
        mOut += "\",\"";
        mOut += type;
        mOut += "\",";
        mOut += itemId;
        mOut += "]";
    }

    QByteArray quotedId() { return '"' + QByteArray::number(mRandom.next() % 100000000u) + '"'; }
    QByteArray numericId() { return QByteArray::number(mRandom.next() % 1000000000u); }

    // A title of a few words; now and then foreign text or an escaped quote.
    void title(const char* name = "title")
    {
        key(name);
        mOut += '"';
        int words = 1 + mRandom.below(4);
        for (int i = 0; i < words; ++i) {
            if (i)
                mOut += ' ';
            int pick = mRandom.below(20);
            if (pick == 0)
                mOut += kForeignWords[mRandom.below(6)];
            else if (pick == 1)
                mOut += "\\\"live\\\"";
            else if (pick == 2)
                mOut += "caf\\u00e9";
            else
                mOut += kWords[mRandom.below(20)];
        }
        mOut += '"';
    }

    // URLs come with escaped slashes, as many JSON writers send them.
    void url(const char* name, const char* service, const char* path)
    {
        key(name);
        mOut += "\"https:\\/\\/api.example.net\\/";
        mOut += service;
        mOut += "\\/";
        mOut += path;
        mOut += "\\/";
        mOut += QByteArray::number(mRandom.next() % 1000000u);
        mOut += '"';
    }

    void image(const char* service)
    {
        key("image");
        raw("{");
        url("url", service, "img");
        raw("}");
    }

    void images(const char* service)
    {
        key("images");
        raw("[");
        const int sizes[] = {120, 300, 600};
        for (int i = 0; i < 3; ++i) {
            if (i)
                raw(",");
            raw("{");
            url("url", service, "img");
            raw(",\"width\":");
            number(sizes[i]);
            raw(",\"height\":");
            number(sizes[i]);
            raw("}");
        }
        raw("]");
    }

    void actions(const char* service)
    {
        key("actions");
        raw("[{");
        id(service, "action", "\"favorite\"");
        raw(",\"title\":\"Add to favourites\",");
        url("url", service, "favorite");
        raw(",\"active\":true,\"perform\":[\"reload\"]},{");
        id(service, "action", "\"share\"");
        raw(",\"title\":\"Share\",");
        url("url", service, "share");
        raw(",\"active\":false,\"message\":null}]");
    }

    void service()
    {
        const char* name = kServices[mRandom.below(7)];
        raw("{");
        id("airable", "service", '"' + QByteArray(name) + '"');
        raw(",");
        title();
        raw(",");
        url("url", name, "root");
        raw(",");
        image(name);
        raw(",\"description\":\"Music from ");
        raw(name);
        raw("\"}");
    }

    void directory()
    {
        raw("{");
        id("airable", "directory", quotedId());
        raw(",");
        title();
        raw(",");
        url("url", "airable", "directory");
        raw("}");
    }

    void radio()
    {
        raw("{");
        id("airable", "radio", numericId());
        raw(",");
        title();
        raw(",");
        title("slogan");
        raw(",");
        url("url", "airable", "radio");
        raw(",\"place\":{");
        id("airable", "place", "\"de\"");
        raw(",\"title\":\"Deutschland\",\"iso\":\"de\",\"type\":\"country\",\"geo\":\"51,10\"},\"language\":{");
        id("airable", "language", "\"de\"");
        raw(",\"title\":\"Deutsch\",\"iso\":\"de\"},\"genres\":{");
        id("airable", "listing", "\"genres\"");
        raw(",\"content\":{\"entries\":[{");
        id("airable", "genre", quotedId());
        raw(",\"title\":\"");
        raw(kGenres[mRandom.below(7)]);
        raw("\"}]}},\"streams\":[");
        int streams = 1 + mRandom.below(3);
        for (int i = 0; i < streams; ++i) {
            if (i)
                raw(",");
            raw("{");
            id("airable", "radio.stream", numericId());
            raw(",");
            url("url", "airable", "stream");
            raw(",\"codec\":{\"name\":\"");
            raw(kCodecs[mRandom.below(4)]);
            raw("\",\"bitrate\":");
            number(kBitrates[mRandom.below(6)]);
            raw("}}");
        }
        raw("],");
        images("airable");
        raw(",");
        actions("airable");
        raw("}");
    }

    void person(const char* service, const char* type)
    {
        key(type);
        raw("{");
        id(service, type, numericId());
        raw(",");
        title();
        raw(",");
        url("url", service, type);
        raw(",");
        images(service);
        raw("}");
    }

    void track()
    {
        const char* service = kServices[1 + mRandom.below(6)];
        raw("{");
        id(service, "track", numericId());
        raw(",");
        title();
        raw(",\"duration\":");
        number(60 + mRandom.below(400));
        raw(",");
        url("url", service, "track");
        raw(",");
        person(service, "artist");
        raw(",");
        person(service, "album");
        raw(",\"streams\":[],\"events\":{");
        url("start", service, "event");
        raw(",");
        url("stop", service, "event");
        raw(",\"pause\":\"\"},");
        actions(service);
        raw("}");
    }

    void entry()
    {
        int pick = mRandom.below(10);
        if (pick < 2)
            service();
        else if (pick < 3)
            directory();
        else if (pick < 6)
            radio();
        else
            track();
    }

    void listingHead(const char* listingId)
    {
        raw("{");
        id("airable", "listing", '"' + QByteArray(listingId) + '"');
        raw(",\"title\":\"Browse\",");
        url("url", "airable", "listing");
        raw(",");
    }

    void listingTail(int count)
    {
        raw(",\"pagination\":{");
        url("next", "airable", "page");
        raw(",");
        url("prev", "airable", "page");
        raw(",\"pages\":{\"url\":\"https:\\/\\/api.example.net\\/airable\\/page?p=:value:\",\"current\":1,");
        raw("\"values\":[1,2,3,4,5],\"replace\":\":value:\"}},\"collection\":{\"size\":");
        number(count * 7);
        raw(",\"limit\":");
        number(count);
        raw(",\"offset\":0}},");
        actions("airable");
        raw("}");
    }

private:
    QByteArray mOut;
    Random mRandom;
};

int targetBytes(Size size)
{
    switch (size) {
    case Size::Small:
        return 5 * 1024;
    case Size::Medium:
        return 100 * 1024;
    case Size::Large:
        break;
    }
    return 2 * 1024 * 1024;
}

} // namespace

QByteArray listing(Size size)
{
    const int target = targetBytes(size);
    Writer w(12345);
    w.out().reserve(target + 4096);
    w.listingHead("browse");
    w.raw("\"content\":{\"entries\":[");
    int count = 0;
    // Room is left for the tail, so the document ends near the target.
    while (w.out().size() < target - 700) {
        if (count++)
            w.raw(",");
        w.entry();
    }
    w.raw("]");
    w.listingTail(count);
    return w.out();
}

QByteArray floatHeavy()
{
    Writer w(777);
    w.listingHead("analysis");
    w.raw("\"content\":{\"entries\":[");
    int count = 0;
    while (w.out().size() < 100 * 1024 - 700) {
        if (count++)
            w.raw(",");
        Random& r = w.random();
        w.raw("{");
        w.id("airable", "track", w.numericId());
        w.raw(",\"gain\":");
        w.real(-12.0 + r.below(1200) / 100.0, 2);
        w.raw(",\"peak\":");
        w.real(r.below(1000000) / 1000000.0, 6);
        w.raw(",\"bpm\":");
        w.real(60 + r.below(12000) / 100.0, 2);
        w.raw(",\"position\":[");
        w.real(-90 + r.below(18000000) / 100000.0, 5);
        w.raw(",");
        w.real(-180 + r.below(36000000) / 100000.0, 5);
        w.raw("],\"energy\":[");
        for (int i = 0; i < 12; ++i) {
            if (i)
                w.raw(",");
            w.real(r.below(100000) / 1000.0, 3);
            if (i % 4 == 3)
                w.raw("e-1");
        }
        w.raw("]}");
    }
    w.raw("]");
    w.listingTail(count);
    return w.out();
}

QByteArray escapeHeavy()
{
    Writer w(4242);
    w.listingHead("texts");
    w.raw("\"content\":{\"entries\":[");
    const char* const pieces[] = {
        "\\n", "\\\"", "\\\\", "\\/", "\\t", "\\u00e9", "\\u00fc", "\\u20ac", "\\uD83C\\uDFB5", "\\r\\n",
    };
    int count = 0;
    while (w.out().size() < 100 * 1024 - 700) {
        if (count++)
            w.raw(",");
        Random& r = w.random();
        w.raw("{");
        w.id("airable", "feed.episode", w.quotedId());
        w.raw(",");
        w.title();
        w.raw(",\"description\":\"");
        int parts = 8 + r.below(8);
        for (int i = 0; i < parts; ++i) {
            w.raw(kWords[r.below(20)]);
            w.raw(pieces[r.below(10)]);
        }
        w.raw("\",");
        w.url("url", "airable", "episode");
        w.raw("}");
    }
    w.raw("]");
    w.listingTail(count);
    return w.out();
}

const QByteArray& input(Input which)
{
    static const QByteArray small = listing(Size::Small);
    static const QByteArray medium = listing(Size::Medium);
    static const QByteArray large = listing(Size::Large);
    static const QByteArray floats = floatHeavy();
    static const QByteArray escapes = escapeHeavy();
    switch (which) {
    case Input::ListingSmall:
        return small;
    case Input::ListingMedium:
        return medium;
    case Input::ListingLarge:
        return large;
    case Input::FloatHeavy:
        return floats;
    case Input::EscapeHeavy:
        break;
    }
    return escapes;
}

const char* inputName(Input which)
{
    switch (which) {
    case Input::ListingSmall:
        return "listing_5k";
    case Input::ListingMedium:
        return "listing_100k";
    case Input::ListingLarge:
        return "listing_2m";
    case Input::FloatHeavy:
        return "floats_100k";
    case Input::EscapeHeavy:
        break;
    }
    return "escapes_100k";
}

} // namespace benchdata
