#pragma once

#include "AirableObject.h"

#include <typeinfo>

namespace airable {

// A scalar member of a cloud object. T is one of QString, int, bool, float.
template <typename T>
class SimpleValue final : public AirableObject
{
public:
    typedef portable::SmartPointer<SimpleValue<T>> Ptr;

    SimpleValue(QString const& name, T const& value) : mName(name), mValue(value) {}
    // Placed in `arena` by the factory; `name` lies in the arena or in its
    // document.
    SimpleValue(AirableArena* arena, AirableText&& name, T const& value)
        : AirableObject(arena)
        , mName(std::move(name))
        , mValue(value)
    {
    }

    QString name() const override { return mName.toString(AirableText::Latin1); }
    bool hasName(QLatin1String key) const override { return mName.equals(key, AirableText::Latin1); }
    T value() const { return mValue; }

private:
    AirableText mName;
    T mValue;
};

// A string member. Most strings of an answer are never read, so a value
// built from a parsed document stays there as UTF-8, and is decoded when it
// is asked for.
template <>
class SimpleValue<QString> final : public AirableObject
{
public:
    typedef portable::SmartPointer<SimpleValue<QString>> Ptr;

    SimpleValue(QString const& name, QString const& value)
        : mName(name)
        , mValue(value)
    {
    }
    // Placed in `arena` by the factory; both texts lie in the arena or in its
    // document.
    SimpleValue(AirableArena* arena, AirableText&& name, AirableText&& value)
        : AirableObject(arena)
        , mName(std::move(name))
        , mValue(std::move(value))
    {
    }

    QString name() const override { return mName.toString(AirableText::Latin1); }
    bool hasName(QLatin1String key) const override { return mName.equals(key, AirableText::Latin1); }
    QString value() const { return mValue.toString(AirableText::Utf8); }

private:
    AirableText mName;
    AirableText mValue;
};

// A value has no subclasses, so a child is one exactly when its class is:
// the look-ups of the accessors compare the class rather than cast through
// the hierarchy.
template <typename T>
SimpleValue<T>* asValue(AirableObject* object)
{
    return object && typeid(*object) == typeid(SimpleValue<T>) ? static_cast<SimpleValue<T>*>(object) : nullptr;
}

} // namespace airable
