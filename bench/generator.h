#pragma once

#include <QByteArray>

// Deterministic cloud answers for the benchmarks. Each call builds the same
// bytes; input() builds once and keeps them.
namespace benchdata {

enum class Size
{
    Small,  // about 5 KB
    Medium, // about 100 KB
    Large   // about 2 MB
};

// A listing as the cloud serves it: services, radios with streams and codecs,
// tracks with artist and album objects and images, directories, actions,
// pagination and collection, with some escapes and non-ASCII text.
QByteArray listing(Size size);

// About 100 KB of tracks whose members are mostly floats.
QByteArray floatHeavy();

// About 100 KB of items whose texts are full of escapes.
QByteArray escapeHeavy();

enum class Input
{
    ListingSmall,
    ListingMedium,
    ListingLarge,
    FloatHeavy,
    EscapeHeavy
};

const QByteArray& input(Input which);
const char* inputName(Input which);

} // namespace benchdata
