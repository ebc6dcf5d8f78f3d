#pragma once

#include "ListingContainer.h"

namespace airable {

class ArtistItem;

// An album: its rows are its tracks.
class AlbumItem : public ListingContainer
{
public:
    typedef portable::SmartPointer<AlbumItem> Ptr;

    AlbumItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    AirableVector<ContentItem::Ptr> items() const override;
    // The nested "artist" object.
    QString artistId() const;
    QString artistTitle() const;
    QString artistImageUrl() const;

private:
    portable::SmartPointer<ArtistItem> artist() const;
};

} // namespace airable
