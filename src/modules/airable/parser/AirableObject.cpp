#include "AirableObject.h"

#include "Portable_BlockPool.h"
#include "SimpleValue.h"

#include <new>

namespace airable {

void AirableObject::dump(int const&)
{
}

void* AirableObject::operator new(std::size_t size)
{
    return portable::blockpool::allocate(size);
}

void AirableObject::operator delete(void* p, std::size_t size)
{
    portable::blockpool::release(p, size);
}

AirableChildren::AirableChildren(AirableChildren const& other)
{
    reserve(other.mSize);
    for (AirableObject::Ptr const& child : other)
        append(child);
}

AirableChildren& AirableChildren::operator=(AirableChildren const& other)
{
    if (this != &other) {
        AirableChildren copy(other);
        std::swap(mData, copy.mData);
        std::swap(mSize, copy.mSize);
        std::swap(mCapacity, copy.mCapacity);
    }
    return *this;
}

AirableChildren::~AirableChildren()
{
    clear();
}

void AirableChildren::clear()
{
    for (int i = 0; i < mSize; ++i)
        mData[i].~SmartPointer();
    portable::blockpool::release(mData, std::size_t(mCapacity) * sizeof(AirableObject::Ptr));
    mData = nullptr;
    mSize = 0;
    mCapacity = 0;
}

void AirableChildren::reserve(int capacity)
{
    if (capacity <= mCapacity)
        return;
    auto* const data = static_cast<AirableObject::Ptr*>(
        portable::blockpool::allocate(std::size_t(capacity) * sizeof(AirableObject::Ptr)));
    for (int i = 0; i < mSize; ++i) {
        new (data + i) AirableObject::Ptr(std::move(mData[i]));
        mData[i].~SmartPointer();
    }
    portable::blockpool::release(mData, std::size_t(mCapacity) * sizeof(AirableObject::Ptr));
    mData = data;
    mCapacity = capacity;
}

void AirableChildren::append(AirableObject::Ptr child)
{
    if (mSize == mCapacity)
        reserve(mCapacity < 4 ? 4 : mCapacity * 2);
    new (mData + mSize) AirableObject::Ptr(std::move(child));
    ++mSize;
}

AirableVector<AirableObject::Ptr> AirableChildren::toVector() const
{
    AirableVector<AirableObject::Ptr> result;
    result.reserve(mSize);
    for (AirableObject::Ptr const& child : *this)
        result.append(child);
    return result;
}

bool AirableContainer::browsable() const
{
    return false;
}

AirableObject::Ptr AirableContainer::childByName(QString const& name) const
{
    for (AirableObject::Ptr const& child : mChildren) {
        if (child->name() == name)
            return child;
    }
    return AirableObject::Ptr();
}

AirableObject::Ptr AirableContainer::childByName(QLatin1String name) const
{
    for (AirableObject::Ptr const& child : mChildren) {
        if (child->hasName(name))
            return child;
    }
    return AirableObject::Ptr();
}

QString AirableContainer::stringValueOf(QLatin1String key) const
{
    auto value = childByNameAs<SimpleValue<QString>>(key);
    return value ? value->value() : QString();
}

int AirableContainer::intValueOf(QLatin1String key) const
{
    auto value = childByNameAs<SimpleValue<int>>(key);
    return value ? value->value() : 0;
}

bool AirableContainer::boolValueOf(QLatin1String key) const
{
    auto value = childByNameAs<SimpleValue<bool>>(key);
    return value ? value->value() : false;
}

AirableVector<QString> AirableContainer::stringValues() const
{
    AirableVector<QString> result;
    for (AirableObject::Ptr const& child : mChildren) {
        if (auto* value = dynamic_cast<SimpleValue<QString>*>(child.get()))
            result.append(value->value());
    }
    return result;
}

} // namespace airable
