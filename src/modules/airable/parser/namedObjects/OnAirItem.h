#pragma once

#include "ContainerWithName.h"
#include "ArtistItem.h"
#include "TrackItem.h"

namespace airable {

// What a radio plays now. The factory never makes one: cloud data holds none.
class OnAirItem : public ContainerWithName
{
public:
    typedef portable::SmartPointer<OnAirItem> Ptr;

    OnAirItem();

    ContainerWithName::Ptr create(QString const& name) override;

    ArtistItem::Ptr artist() const;
    TrackItem::Ptr track() const;
};

} // namespace airable
