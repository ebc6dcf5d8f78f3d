#pragma once

#include "ListingContainer.h"

namespace airable {

// A playlist: its rows are its tracks.
class PlaylistItem : public ListingContainer
{
public:
    typedef portable::SmartPointer<PlaylistItem> Ptr;

    PlaylistItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    AirableVector<ContentItem::Ptr> items() const override;
};

} // namespace airable
