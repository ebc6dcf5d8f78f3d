#pragma once

#include "AirableObject.h"

namespace airable {

// A member of a cloud object, found by its key. The subclasses are the
// records of known keys; this class is also the generic container for any
// other object or array member.
class ContainerWithName : public AirableContainer
{
public:
    typedef portable::SmartPointer<ContainerWithName> Ptr;

    explicit ContainerWithName(QString const& name);
    // Placed in `arena` by the factory; `name` lies in the arena or in its
    // document.
    ContainerWithName(AirableArena* arena, AirableText&& name);

    QString name() const override { return mName.toString(AirableText::Latin1); }
    bool hasName(QLatin1String key) const override { return mName.equals(key, AirableText::Latin1); }
    void dump(int const& depth) override;

    // A new object of the receiver's class. Subclasses keep their fixed key
    // and ignore `name`.
    virtual ContainerWithName::Ptr create(QString const& name);

protected:
    AirableText mName;
};

} // namespace airable
