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

    QString name() const override { return mName; }
    bool hasName(QLatin1String key) const override { return mName == key; }
    void dump(int const& depth) override;

    // A new object of the receiver's class. Subclasses keep their fixed key
    // and ignore `name`.
    virtual ContainerWithName::Ptr create(QString const& name);

protected:
    QString mName;
};

} // namespace airable
