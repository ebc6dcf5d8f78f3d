#pragma once

#include "ContainerWithName.h"

namespace airable {

// The size of a whole listing and the window of it that an answer holds.
class CollectionItem : public ContainerWithName
{
public:
    typedef portable::SmartPointer<CollectionItem> Ptr;

    CollectionItem();

    ContainerWithName::Ptr create(QString const& name) override;

    int size() const;
    int limit() const;
    int offset() const;
};

} // namespace airable
