#pragma once

#include "Portable_ReferenceCountedObject.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <cstddef>

struct json_value;
class block_allocator;

namespace portable {
namespace utils {

// A cheap handle to one node of a parsed tree. It does not own the node and is
// valid only while the RootJsonValue of its tree exists. A handle without a node
// is the invalid value: every operation is defined for it, so lookups can be
// chained and tested once with isValid() at the end.
class JsonValue : public portable::ReferenceCountedObject
{
public:
    typedef portable::SmartPointer<JsonValue> Ptr;

    explicit JsonValue(json_value* value = nullptr);
    JsonValue(JsonValue const& other);
    JsonValue& operator=(JsonValue const&) = delete;
    ~JsonValue() override;

    bool isValid() const { return mValue != nullptr; }
    bool operator==(JsonValue const& other) const { return mValue == other.mValue; }

    Ptr parent() const;
    Ptr nextSibling() const;
    Ptr firstChild() const;
    Ptr lastChild() const;

    // First node after this one, in the same parent, whose key is `name`.
    Ptr siblingByName(QString const& name) const;
    // First child whose key is `name`.
    Ptr childByName(QString const& name) const;
    // Child at `index`, counted from 0.
    Ptr childByIndex(int index) const;
    int numChildren() const;

    // Keys are taken byte for byte (Latin-1), values as UTF-8.
    QString name() const;
    int type() const;
    QString stringValue() const;
    qint64 intValue() const;
    float floatValue() const;

    // The node itself, for code that walks a large tree without a handle per step.
    json_value* value() const { return mValue; }

    // Handles are made and dropped at every step of a walk; they come from a
    // per-thread free list instead of the general heap.
    static void* operator new(std::size_t size);
    static void operator delete(void* p, std::size_t size);

protected:
    json_value* mValue;
};

// The handle to a tree's root, which also owns the document text and the node
// memory: the whole tree lives exactly as long as this object.
class RootJsonValue : public JsonValue
{
public:
    typedef portable::SmartPointer<RootJsonValue> Ptr;

    class BlockAllocator : public portable::ReferenceCountedObject
    {
    public:
        typedef portable::SmartPointer<BlockAllocator> Ptr;

        explicit BlockAllocator(block_allocator* allocator);
        ~BlockAllocator() override;
        BlockAllocator(BlockAllocator const&) = delete;
        BlockAllocator& operator=(BlockAllocator const&) = delete;

        block_allocator* allocator() const { return mAllocator; }

    private:
        block_allocator* mAllocator;
    };

    RootJsonValue();
    // Takes a deep copy of `data` and ownership of `allocator`.
    RootJsonValue(QByteArray const& data, block_allocator* allocator);
    RootJsonValue(RootJsonValue const&) = delete;
    ~RootJsonValue() override;

    void assign(json_value const* value);

    // The private copy of the document, which the parse rewrites in place.
    QByteArray& data() { return mData; }
    // The same, shared: the strings of the tree point into it.
    QByteArray const& text() const { return mData; }
    block_allocator* allocator() const;

private:
    QByteArray mData;
    portable::SmartPointer<BlockAllocator> mAllocator;
};

} // namespace utils
} // namespace portable
