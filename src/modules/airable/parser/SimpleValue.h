#pragma once

#include "AirableObject.h"

#include <QByteArray>

namespace airable {

// A scalar member of a cloud object. T is one of QString, int, bool, float.
template <typename T>
class SimpleValue : public AirableObject
{
public:
    typedef portable::SmartPointer<SimpleValue<T>> Ptr;

    SimpleValue(QString const& name, T const& value) : mName(name), mValue(value) {}

    QString name() const override { return mName; }
    bool hasName(QLatin1String key) const override { return mName == key; }
    T value() const { return mValue; }

private:
    QString mName;
    T mValue;
};

// A string member. Most strings of an answer are never read, so a value
// built from a parsed document stays there as UTF-8, and is decoded when it
// is asked for; the object shares the document, which keeps it alive.
template <>
class SimpleValue<QString> : public AirableObject
{
public:
    typedef portable::SmartPointer<SimpleValue<QString>> Ptr;

    SimpleValue(QString const& name, QString const& value) : mName(name), mValue(value) {}
    // `utf8` is zero-terminated and lies inside `document`.
    SimpleValue(QString const& name, QByteArray const& document, char const* utf8)
        : mName(name), mDocument(document), mUtf8(utf8)
    {
    }

    QString name() const override { return mName; }
    bool hasName(QLatin1String key) const override { return mName == key; }
    QString value() const { return mUtf8 ? QString::fromUtf8(mUtf8) : mValue; }

private:
    QString mName;
    QString mValue;
    QByteArray mDocument;
    char const* mUtf8 = nullptr;
};

} // namespace airable
