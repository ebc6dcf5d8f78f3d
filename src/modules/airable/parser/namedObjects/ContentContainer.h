#pragma once

#include "ContainerWithName.h"

namespace airable {

// The body of a listing: holds its entries, pagination and collection,
// which the listing finds by class.
class ContentContainer : public ContainerWithName
{
public:
    typedef portable::SmartPointer<ContentContainer> Ptr;

    ContentContainer();

    ContainerWithName::Ptr create(QString const& name) override;
};

} // namespace airable
