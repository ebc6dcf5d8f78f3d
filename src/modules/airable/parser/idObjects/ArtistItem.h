#pragma once

#include "ListingContainer.h"

namespace airable {

// An artist.
class ArtistItem : public ListingContainer
{
public:
    typedef portable::SmartPointer<ArtistItem> Ptr;

    ArtistItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    AirableVector<ContentItem::Ptr> items() const override;
};

} // namespace airable
