#pragma once

#include "json.h"

#include <QByteArray>
#include <QString>

#include <atomic>
#include <cstddef>
#include <utility>
#include <vector>

namespace airable {

class AirableObject;

// The memory of one cloud answer's objects. The factory builds a whole tree
// in one arena: objects, their arrays of children and their texts are placed
// one after the other, and the texts read from the document stay in the
// document, which the arena keeps. Objects inside hold no count of their own
// and own nothing: a reference to any of them counts for the arena, and the
// last one released frees the answer at once, without visiting its objects.
class AirableArena
{
public:
    // `document` is the parsed copy the texts point into, or null when every
    // text is copied in. `expectedBytes` sizes the first block, so that a
    // small answer held for long does not keep a whole block.
    AirableArena(QByteArray const& document, std::size_t expectedBytes);
    AirableArena(AirableArena const&) = delete;
    AirableArena& operator=(AirableArena const&) = delete;

    void addRef() { mCount.fetch_add(1, std::memory_order_relaxed); }
    void release()
    {
        if (mCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }
    int refCount() const { return mCount.load(std::memory_order_relaxed); }

    // 8-aligned memory that lives as long as the arena.
    void* allocate(std::size_t size)
    {
        size = (size + 7) & ~std::size_t(7);
        block_allocator::block* const head = mMemory.head;
        if (head && head->used + size <= head->size) {
            void* const p = head->buffer + head->used;
            head->used += size;
            mMemory.bytesAllocated += static_cast<unsigned int>(size);
            return p;
        }
        return grow(size);
    }

    // Zero-terminated copies of a text, as bytes: a QString's in UTF-8.
    char const* copy(char const* bytes);
    char const* copy(QString const& text);

    // An object of another arena or of the heap that an object here refers
    // to: it is kept until this arena goes.
    void keep(AirableObject* object);

    // The arena that objects made on this thread go into while a walk
    // builds a tree; null otherwise.
    static AirableArena* current() { return tCurrent; }

    // Objects made on this thread during the scope go into `arena`.
    class Scope
    {
    public:
        explicit Scope(AirableArena* arena) : mPrevious(tCurrent) { tCurrent = arena; }
        ~Scope() { tCurrent = mPrevious; }
        Scope(Scope const&) = delete;
        Scope& operator=(Scope const&) = delete;

    private:
        AirableArena* mPrevious;
    };

private:
    ~AirableArena();
    void* grow(std::size_t size);

    static thread_local AirableArena* tCurrent;

    std::atomic<int> mCount{0};
    block_allocator mMemory;
    QByteArray mDocument;
    std::vector<AirableObject*> mKept;
};

// A text of an object: bytes of the answer's document, which the object's
// arena keeps alive; a copy of a QString, in the arena or, for an object made
// outside an answer, of its own; or a literal of the code, shared as it is.
// The document's keys are read byte for byte (Latin-1) and its values as
// UTF-8, as the parser hands them over; a copy is UTF-8, whatever it holds.
class AirableText
{
public:
    enum Encoding { Utf8, Latin1 };

    AirableText() = default;
    // Inside an arena's scope the text is copied into the arena.
    explicit AirableText(QString const& text);
    AirableText(AirableText const&) = delete;
    AirableText& operator=(AirableText const&) = delete;
    AirableText(AirableText&& other) noexcept : mData(other.mData), mKind(other.mKind)
    {
        other.mData = nullptr;
        other.mKind = Bytes;
    }
    AirableText& operator=(AirableText&& other) noexcept
    {
        std::swap(mData, other.mData);
        std::swap(mKind, other.mKind);
        return *this;
    }
    ~AirableText()
    {
        if (mKind == OwnCopy)
            delete[] static_cast<char const*>(mData);
    }

    // `bytes` is zero-terminated and outlives the object that holds it.
    static AirableText borrowed(char const* bytes)
    {
        AirableText text;
        text.mData = bytes;
        return text;
    }

    QString toString(Encoding encoding) const;
    // The same as toString(encoding) == key, without decoding.
    bool equals(QLatin1String key, Encoding encoding) const;
    // The same as text += toString(encoding).
    void appendTo(QString& text, Encoding encoding) const;

private:
    enum Kind : unsigned char { Bytes, Copy, OwnCopy, Literal };

    // How the bytes read: a copy is always UTF-8.
    Encoding encodingOf(Encoding asked) const { return mKind == Bytes ? asked : Utf8; }

    // Zero-terminated bytes, or the data of a literal QString.
    void const* mData = nullptr;
    // Only objects made outside an answer own their bytes; an arena's objects
    // are never destroyed one by one.
    Kind mKind = Bytes;
};

} // namespace airable
