#pragma once

#include "AirableObject.h"

namespace airable {

// A scalar member of a cloud object. T is one of QString, int, bool, float.
template <typename T>
class SimpleValue : public AirableObject
{
public:
    typedef portable::SmartPointer<SimpleValue<T>> Ptr;

    SimpleValue(QString const& name, T const& value) : mName(name), mValue(value) {}

    QString name() const override { return mName; }
    T value() const { return mValue; }

private:
    QString mName;
    T mValue;
};

} // namespace airable
