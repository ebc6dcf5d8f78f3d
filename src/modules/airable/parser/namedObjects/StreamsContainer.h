#pragma once

#include "ContainerWithName.h"

namespace airable {

// The streams of a playable item; their owner reads them.
class StreamsContainer : public ContainerWithName
{
public:
    typedef portable::SmartPointer<StreamsContainer> Ptr;

    StreamsContainer();

    ContainerWithName::Ptr create(QString const& name) override;
};

} // namespace airable
