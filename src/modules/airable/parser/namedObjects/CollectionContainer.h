#pragma once

#include "ContainerWithName.h"

namespace airable {

// Kept beside CollectionItem with the same accessors; the factory never makes it.
class CollectionContainer : public ContainerWithName
{
public:
    typedef portable::SmartPointer<CollectionContainer> Ptr;

    CollectionContainer();

    ContainerWithName::Ptr create(QString const& name) override;

    int size() const;
    int limit() const;
    int offset() const;
};

} // namespace airable
