#include "AirableObject.h"

#include "SimpleValue.h"

#include <cstring>

namespace airable {

void AirableObject::dump(int const&)
{
}

void AirableObject::operator delete(void* p, std::size_t size)
{
    portable::blockpool::release(p, size);
}

// Only a container made outside an answer is ever destroyed.
AirableContainer::~AirableContainer()
{
    for (AirableObject* child : *this)
        child->release();
    portable::blockpool::release(mChildren, mCapacity * sizeof(AirableObject*));
}

bool AirableContainer::browsable() const
{
    return false;
}

AirableVector<AirableObject::Ptr> AirableContainer::children() const
{
    return AirableVector<AirableObject::Ptr>(begin(), end());
}

void AirableContainer::reserveChildren(int count)
{
    if (count <= 0 || quint32(count) <= mCapacity)
        return;
    std::size_t const bytes = std::size_t(count) * sizeof(AirableObject*);
    auto* const array = static_cast<AirableObject**>(arena() ? arena()->allocate(bytes)
                                                              : portable::blockpool::allocate(bytes));
    if (mCount)
        std::memcpy(array, mChildren, mCount * sizeof(AirableObject*));
    if (!arena())
        portable::blockpool::release(mChildren, mCapacity * sizeof(AirableObject*));
    mChildren = array;
    mCapacity = quint32(count);
}

void AirableContainer::appendChild(AirableObject* child)
{
    if (!child)
        return;
    if (mCount == mCapacity)
        reserveChildren(mCapacity ? int(mCapacity) * 2 : 4);
    if (!arena())
        child->addRef();
    else if (child->arena() != arena())
        arena()->keep(child);
    mChildren[mCount++] = child;
}

AirableObject::Ptr AirableContainer::childByName(QString const& name) const
{
    for (AirableObject* child : *this) {
        if (child->name() == name)
            return child;
    }
    return AirableObject::Ptr();
}

AirableObject::Ptr AirableContainer::childByName(QLatin1String name) const
{
    for (AirableObject* child : *this) {
        if (child->hasName(name))
            return child;
    }
    return AirableObject::Ptr();
}

// The child named `key` read as a value of type T, or null.
template <typename T>
static SimpleValue<T>* valueOf(AirableContainer const& container, QLatin1String key)
{
    for (AirableObject* child : container) {
        if (child->hasName(key))
            return asValue<T>(child);
    }
    return nullptr;
}

QString AirableContainer::stringValueOf(QLatin1String key) const
{
    auto* const value = valueOf<QString>(*this, key);
    return value ? value->value() : QString();
}

int AirableContainer::intValueOf(QLatin1String key) const
{
    auto* const value = valueOf<int>(*this, key);
    return value ? value->value() : 0;
}

bool AirableContainer::boolValueOf(QLatin1String key) const
{
    auto* const value = valueOf<bool>(*this, key);
    return value ? value->value() : false;
}

AirableVector<QString> AirableContainer::stringValues() const
{
    AirableVector<QString> result;
    for (AirableObject* child : *this) {
        if (auto* value = asValue<QString>(child))
            result.append(value->value());
    }
    return result;
}

} // namespace airable
