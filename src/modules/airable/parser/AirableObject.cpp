#include "AirableObject.h"

#include "SimpleValue.h"

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
