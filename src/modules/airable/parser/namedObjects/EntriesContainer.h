#pragma once

#include "ContainerWithName.h"

namespace airable {

// The items of a listing, in the order of the answer.
class EntriesContainer : public ContainerWithName
{
public:
    typedef portable::SmartPointer<EntriesContainer> Ptr;

    EntriesContainer();

    ContainerWithName::Ptr create(QString const& name) override;
};

} // namespace airable
