#pragma once

#include "AirableObject.h"

namespace airable {

// A scalar member of a cloud object. T is one of QString, int, bool, float.
template <typename T>
class SimpleValue : public AirableObject
{
public:
    typedef portable::SmartPointer<SimpleValue<T>> Ptr;

    SimpleValue(QString const& name, T const& value) : mName(name, AirableText::Latin1), mValue(value) {}
    // `name` lies in the arena the value is made in, or in its document.
    SimpleValue(AirableText&& name, T const& value) : mName(std::move(name)), mValue(value) {}

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
class SimpleValue<QString> : public AirableObject
{
public:
    typedef portable::SmartPointer<SimpleValue<QString>> Ptr;

    SimpleValue(QString const& name, QString const& value)
        : mName(name, AirableText::Latin1)
        , mValue(value, AirableText::Utf8)
    {
    }
    // Both texts lie in the arena the value is made in, or in its document.
    SimpleValue(AirableText&& name, AirableText&& value) : mName(std::move(name)), mValue(std::move(value)) {}

    QString name() const override { return mName.toString(AirableText::Latin1); }
    bool hasName(QLatin1String key) const override { return mName.equals(key, AirableText::Latin1); }
    QString value() const { return mValue.toString(AirableText::Utf8); }

private:
    AirableText mName;
    AirableText mValue;
};

} // namespace airable
