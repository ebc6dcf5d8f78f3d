#pragma once

#include "AirableArena.h"
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
//
// An object of an answer lives in the answer's arena, and a reference to it
// holds the arena: the whole answer stays as long as any of its objects is
// held. An object made outside an answer counts its own references.
class AirableObject : public portable::ReferenceCountedObject
{
public:
    typedef portable::SmartPointer<AirableObject> Ptr;

    AirableObject() : mArena(AirableArena::current()) {}
    ~AirableObject() override = default;
    // A copy would count for an arena it isn't in.
    AirableObject(AirableObject const&) = delete;
    AirableObject& operator=(AirableObject const&) = delete;

    void addRef() const
    {
        if (mArena)
            mArena->addRef();
        else
            ReferenceCountedObject::addRef();
    }
    void release() const
    {
        if (mArena)
            mArena->release();
        else
            ReferenceCountedObject::release();
    }
    // The answer this object belongs to; null for one made outside an answer.
    AirableArena* arena() const { return mArena; }

    // The key under which a parent finds this object.
    virtual QString name() const = 0;
    virtual void dump(int const& depth);
    // name() == key, without the copy of the name: look-ups ask every child.
    virtual bool hasName(QLatin1String key) const { return name() == key; }

    // Inside an arena's scope an object is placed in the arena; others come
    // from memory recycled per thread. Only those are ever deleted.
    static void* operator new(std::size_t size)
    {
        if (AirableArena* const arena = AirableArena::current())
            return arena->allocate(size);
        return portable::blockpool::allocate(size);
    }
    static void operator delete(void* p, std::size_t size);
    // An object that the factory places in its arena itself.
    static void* operator new(std::size_t size, AirableArena& arena) { return arena.allocate(size); }
    static void operator delete(void*, AirableArena&) {}

protected:
    // For an object placed in `arena`, without asking which arena is current.
    explicit AirableObject(AirableArena* arena) : mArena(arena) {}

private:
    AirableArena* const mArena;
};

} // namespace airable

// A SmartPointer is a bare pointer, so the vectors of children may move their
// elements in memory without touching the counts.
Q_DECLARE_TYPEINFO(portable::SmartPointer<airable::AirableObject>, Q_MOVABLE_TYPE);

namespace airable {

// The children of a container are held as plain pointers, in document order:
// those of the container's own arena live as long as it, and the container
// counts a reference on every other one.
class AirableContainer : public AirableObject
{
public:
    typedef portable::SmartPointer<AirableContainer> Ptr;

    AirableContainer() = default;
    explicit AirableContainer(AirableArena* arena) : AirableObject(arena) {}
    ~AirableContainer() override;
    AirableContainer(AirableContainer const&) = delete;
    AirableContainer& operator=(AirableContainer const&) = delete;

    virtual bool browsable() const;

    AirableVector<AirableObject::Ptr> children() const;
    void appendChild(AirableObject::Ptr const& child) { appendChild(child.get()); }
    void appendChild(AirableObject* child);
    void reserveChildren(int count);

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
        for (AirableObject* child : *this) {
            if (T* typed = dynamic_cast<T*>(child))
                return portable::SmartPointer<T>(typed);
        }
        return portable::SmartPointer<T>();
    }

    template <typename T>
    AirableVector<portable::SmartPointer<T>> childrenOf() const
    {
        AirableVector<portable::SmartPointer<T>> result;
        for (AirableObject* child : *this) {
            if (T* typed = dynamic_cast<T*>(child))
                result.append(portable::SmartPointer<T>(typed));
        }
        return result;
    }

    AirableObject* const* begin() const { return mChildren; }
    AirableObject* const* end() const { return mChildren + mCount; }
    int childCount() const { return int(mCount); }

private:
    AirableObject** mChildren = nullptr;
    quint32 mCount = 0;
    quint32 mCapacity = 0;
};

} // namespace airable
