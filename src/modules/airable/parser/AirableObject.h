#pragma once

#include "Portable_BlockPool.h"
#include "Portable_ReferenceCountedObject.h"

#include <QLatin1String>
#include <QString>
#include <QVector>

#include <cstddef>
#include <vector>

namespace airable {

// The vector type of the object model.
template <typename T>
using AirableVector = QVector<T>;

// Root of every object built from a cloud answer. Objects are views on the
// children that the factory puts under them: they never parse, and they keep
// nothing from the JSON beyond their own values.
class AirableObject : public portable::ReferenceCountedObject
{
public:
    typedef portable::SmartPointer<AirableObject> Ptr;

    ~AirableObject() override = default;

    // The key under which a parent finds this object.
    virtual QString name() const = 0;
    virtual void dump(int const& depth);
    // name() == key, without the copy of the name: look-ups ask every child.
    virtual bool hasName(QLatin1String key) const { return name() == key; }

    // A tree holds thousands of objects of a few sizes: their memory is
    // recycled per thread rather than taken from the heap each time.
    static void* operator new(std::size_t size);
    static void operator delete(void* p, std::size_t size);
};

} // namespace airable

// A SmartPointer is a bare pointer, so the vectors of children may move their
// elements in memory without touching the counts.
Q_DECLARE_TYPEINFO(portable::SmartPointer<airable::AirableObject>, Q_MOVABLE_TYPE);

namespace airable {

// The children of a container, in document order. Most containers hold a
// handful, so the array comes from the same recycled memory as the objects.
using AirableChildren = std::vector<AirableObject::Ptr, portable::blockpool::Allocator<AirableObject::Ptr>>;

class AirableContainer : public AirableObject
{
public:
    typedef portable::SmartPointer<AirableContainer> Ptr;

    virtual bool browsable() const;

    AirableVector<AirableObject::Ptr> children() const
    {
        return AirableVector<AirableObject::Ptr>(mChildren.begin(), mChildren.end());
    }
    void appendChild(AirableObject::Ptr child) { mChildren.push_back(std::move(child)); }
    void reserveChildren(int count) { mChildren.reserve(std::size_t(count)); }

    AirableObject::Ptr childByName(QString const& name) const;
    AirableObject::Ptr childByName(QLatin1String name) const;

    // Typed look-ups for the accessors. A missing key is normal, and a child
    // of another class counts as missing: each gives its type's default.
    QString stringValueOf(QLatin1String key) const;
    int intValueOf(QLatin1String key) const;
    bool boolValueOf(QLatin1String key) const;
    // The values of the string children, in order; others are skipped.
    AirableVector<QString> stringValues() const;

    template <typename T>
    portable::SmartPointer<T> childByNameAs(QLatin1String name) const
    {
        return childByName(name).template dynamicCast<T>();
    }

    // The first child of class T, whatever its key.
    template <typename T>
    portable::SmartPointer<T> firstChildOf() const
    {
        for (AirableObject::Ptr const& child : mChildren) {
            if (T* typed = dynamic_cast<T*>(child.get()))
                return portable::SmartPointer<T>(typed);
        }
        return portable::SmartPointer<T>();
    }

    template <typename T>
    AirableVector<portable::SmartPointer<T>> childrenOf() const
    {
        AirableVector<portable::SmartPointer<T>> result;
        for (AirableObject::Ptr const& child : mChildren) {
            if (T* typed = dynamic_cast<T*>(child.get()))
                result.append(portable::SmartPointer<T>(typed));
        }
        return result;
    }

protected:
    AirableChildren mChildren;
};

} // namespace airable
