#pragma once

#include "ContainerWithName.h"
#include "OnAirItem.h"

namespace airable {

// What a radio plays now.
class OnAirContainer : public ContainerWithName
{
public:
    typedef portable::SmartPointer<OnAirContainer> Ptr;

    OnAirContainer();

    ContainerWithName::Ptr create(QString const& name) override;

    AirableVector<OnAirItem::Ptr> items() const;
};

} // namespace airable
