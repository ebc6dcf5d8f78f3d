#include "AirableArena.h"

#include "AirableObject.h"

#include <algorithm>
#include <cstring>

namespace airable {

namespace {
// Every thread keeps blocks of this size warm, for the parser's nodes too.
constexpr std::size_t kBlockSize = block_allocator::kKeptBlockSize;
constexpr std::size_t kSmallestBlock = 1024;
} // namespace

thread_local AirableArena* AirableArena::tCurrent = nullptr;

AirableArena::AirableArena(QByteArray const& document, std::size_t expectedBytes)
    : mMemory(static_cast<unsigned long>(std::clamp(expectedBytes, kSmallestBlock, kBlockSize)))
    , mDocument(document)
{
}

AirableArena::~AirableArena()
{
    for (AirableObject* object : mKept)
        object->release();
}

void* AirableArena::grow(std::size_t size)
{
    void* const p = mMemory.malloc(static_cast<unsigned long>(size));
    // Only the first block is sized by the answer; a tree that outgrows it
    // is a large one, and goes on in the blocks the threads keep.
    mMemory.blockSize = kBlockSize;
    return p;
}

char const* AirableArena::copy(char const* bytes)
{
    std::size_t const size = std::strlen(bytes) + 1;
    auto* const target = static_cast<char*>(allocate(size));
    std::memcpy(target, bytes, size);
    return target;
}

char const* AirableArena::copy(QString const& text)
{
    // The texts objects are made with are mostly short ASCII words.
    int const length = text.size();
    QChar const* const chars = text.constData();
    bool ascii = true;
    for (int i = 0; i < length && ascii; ++i)
        ascii = chars[i].unicode() < 0x80;
    if (!ascii)
        return copy(text.toUtf8().constData());
    auto* const target = static_cast<char*>(allocate(std::size_t(length) + 1));
    for (int i = 0; i < length; ++i)
        target[i] = static_cast<char>(chars[i].unicode());
    target[length] = '\0';
    return target;
}

void AirableArena::keep(AirableObject* object)
{
    object->addRef();
    mKept.push_back(object);
}

namespace {

bool isAscii(char const* bytes)
{
    for (; *bytes; ++bytes) {
        if (*bytes & 0x80)
            return false;
    }
    return true;
}

bool isAscii(QLatin1String key)
{
    return std::all_of(key.data(), key.data() + key.size(), [](char c) { return (c & 0x80) == 0; });
}

} // namespace

AirableText::AirableText(QString const& text)
{
    if (text.isNull())
        return;
    // The code's own words (an object's type word, a record's key) are
    // literals that live as long as the code does.
    QStringData* const data = const_cast<QString&>(text).data_ptr();
    if (data->ref.isStatic()) {
        mData = data;
        mKind = Literal;
        return;
    }
    if (AirableArena* const arena = AirableArena::current()) {
        mData = arena->copy(text);
        mKind = Copy;
        return;
    }
    QByteArray const bytes = text.toUtf8();
    auto* const own = new char[std::size_t(bytes.size()) + 1];
    std::memcpy(own, bytes.constData(), std::size_t(bytes.size()) + 1);
    mData = own;
    mKind = OwnCopy;
}

QString AirableText::toString(Encoding encoding) const
{
    if (!mData)
        return QString();
    if (mKind == Literal) {
        QStringDataPtr literal{static_cast<QStringData*>(const_cast<void*>(mData))};
        return QString(literal);
    }
    auto const* const bytes = static_cast<char const*>(mData);
    return encodingOf(encoding) == Latin1 ? QString::fromLatin1(bytes) : QString::fromUtf8(bytes);
}

void AirableText::appendTo(QString& text, Encoding encoding) const
{
    if (!mData)
        return;
    auto const* const bytes = static_cast<char const*>(mData);
    if (mKind != Literal && (encodingOf(encoding) == Latin1 || isAscii(bytes)))
        text.append(QLatin1String(bytes));
    else
        text.append(toString(encoding));
}

bool AirableText::equals(QLatin1String key, Encoding encoding) const
{
    if (mKind == Literal)
        return toString(encoding) == key;
    char const* const own = mData ? static_cast<char const*>(mData) : "";
    int const size = key.size();
    bool const sameBytes = std::strncmp(own, key.data(), std::size_t(size)) == 0 && own[size] == '\0';
    // Bytes above ASCII in the key are Latin-1 letters, which UTF-8 writes in
    // two bytes: only then can the bytes and the texts disagree.
    if (encodingOf(encoding) == Latin1 || isAscii(key))
        return sameBytes;
    return toString(encoding) == key;
}

} // namespace airable
