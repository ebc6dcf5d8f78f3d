#include "JsonValue.h"

#include "json.h"

#include <new>

namespace portable {
namespace utils {

namespace {

// A walk makes and drops a handle at every step; recycling their memory per
// thread keeps that off the general heap. The pool is bounded, and a handle
// released after its thread's pool is gone goes back to the heap.
struct HandlePool
{
    struct Slot
    {
        Slot* next;
    };

    Slot* head = nullptr;
    int count = 0;

    ~HandlePool();
};

constexpr int kPoolLimit = 1024;

thread_local bool tPoolGone = false;
thread_local HandlePool tPool;

HandlePool::~HandlePool()
{
    tPoolGone = true;
    while (head) {
        Slot* next = head->next;
        ::operator delete(head);
        head = next;
    }
    count = 0;
}

JsonValue::Ptr handle(json_value* node)
{
    return JsonValue::Ptr(new JsonValue(node));
}

} // namespace

void* JsonValue::operator new(std::size_t size)
{
    if (size == sizeof(JsonValue) && !tPoolGone) {
        HandlePool& pool = tPool;
        if (pool.head) {
            HandlePool::Slot* slot = pool.head;
            pool.head = slot->next;
            --pool.count;
            return slot;
        }
    }
    return ::operator new(size);
}

void JsonValue::operator delete(void* p, std::size_t size)
{
    if (size == sizeof(JsonValue) && !tPoolGone) {
        HandlePool& pool = tPool;
        if (pool.count < kPoolLimit) {
            auto* slot = static_cast<HandlePool::Slot*>(p);
            slot->next = pool.head;
            pool.head = slot;
            ++pool.count;
            return;
        }
    }
    ::operator delete(p);
}

JsonValue::JsonValue(json_value* value)
    : mValue(value)
{
}

JsonValue::JsonValue(JsonValue const& other)
    : portable::ReferenceCountedObject()
    , mValue(other.mValue)
{
}

JsonValue::~JsonValue() = default;

JsonValue::Ptr JsonValue::parent() const
{
    return handle(mValue ? mValue->parent : nullptr);
}

JsonValue::Ptr JsonValue::nextSibling() const
{
    return handle(mValue ? mValue->nextSibling : nullptr);
}

JsonValue::Ptr JsonValue::firstChild() const
{
    return handle(mValue ? mValue->firstChild : nullptr);
}

JsonValue::Ptr JsonValue::lastChild() const
{
    return handle(mValue ? mValue->lastChild : nullptr);
}

namespace {

// A key equals a name when its Latin-1 reading does; compared in place, with
// no QString made per key. A node without a key reads as the empty name.
bool keyEquals(const char* key, QString const& name)
{
    if (!key)
        return name.isEmpty();
    const QChar* chars = name.constData();
    const int size = name.size();
    for (int i = 0; i < size; ++i) {
        const unsigned char byte = static_cast<unsigned char>(key[i]);
        if (byte == 0 || chars[i].unicode() != byte)
            return false;
    }
    return key[size] == 0;
}

json_value* findByName(json_value* node, QString const& name)
{
    for (; node; node = node->nextSibling) {
        if (keyEquals(node->name, name))
            return node;
    }
    return nullptr;
}

} // namespace

JsonValue::Ptr JsonValue::siblingByName(QString const& name) const
{
    return handle(mValue ? findByName(mValue->nextSibling, name) : nullptr);
}

JsonValue::Ptr JsonValue::childByName(QString const& name) const
{
    return handle(mValue ? findByName(mValue->firstChild, name) : nullptr);
}

JsonValue::Ptr JsonValue::childByIndex(int index) const
{
    if (!mValue || index < 0)
        return handle(nullptr);
    json_value* node = mValue->firstChild;
    for (; node && index > 0; --index)
        node = node->nextSibling;
    return handle(node);
}

int JsonValue::numChildren() const
{
    if (!mValue)
        return 0;
    int count = 0;
    for (json_value* node = mValue->firstChild; node; node = node->nextSibling)
        ++count;
    return count;
}

QString JsonValue::name() const
{
    if (!mValue || !mValue->name)
        return QString();
    return QString::fromLatin1(mValue->name);
}

int JsonValue::type() const
{
    return mValue ? mValue->type : JSON_NULL;
}

QString JsonValue::stringValue() const
{
    if (!mValue || mValue->type != JSON_STRING)
        return QString();
    return QString::fromUtf8(mValue->stringValue);
}

qint64 JsonValue::intValue() const
{
    if (!mValue || (mValue->type != JSON_INT && mValue->type != JSON_BOOL))
        return 0;
    return mValue->intValue;
}

float JsonValue::floatValue() const
{
    if (!mValue || mValue->type != JSON_FLOAT)
        return 0.0f;
    return mValue->floatValue;
}

RootJsonValue::BlockAllocator::BlockAllocator(block_allocator* allocator)
    : mAllocator(allocator)
{
}

RootJsonValue::BlockAllocator::~BlockAllocator()
{
    delete mAllocator;
}

RootJsonValue::RootJsonValue()
    : JsonValue(nullptr)
{
}

RootJsonValue::RootJsonValue(QByteArray const& data, block_allocator* allocator)
    : JsonValue(nullptr)
    // The parse rewrites the text, so it must never share storage with the
    // caller's array.
    , mData(data.constData(), data.size())
    , mAllocator(new BlockAllocator(allocator))
{
}

RootJsonValue::~RootJsonValue() = default;

void RootJsonValue::assign(json_value const* value)
{
    mValue = const_cast<json_value*>(value);
}

block_allocator* RootJsonValue::allocator() const
{
    return mAllocator ? mAllocator->allocator() : nullptr;
}

} // namespace utils
} // namespace portable
