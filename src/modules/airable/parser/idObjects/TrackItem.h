#pragma once

#include "PlayableContentItem.h"
#include "EventsItem.h"
#include "StreamItem.h"

namespace airable {

class AlbumItem;
class ArtistItem;

// A track of a music service.
class TrackItem : public PlayableContentItem
{
public:
    typedef portable::SmartPointer<TrackItem> Ptr;

    TrackItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    AirableVector<StreamItem::Ptr> streams() const;
    int duration() const;
    EventsItem::Ptr events() const;

    // The nested "artist" and "album" objects.
    QString artistId() const;
    QString artistTitle() const;
    QString artistImageUrl() const;
    QString albumId() const;
    QString albumTitle() const;
    QString albumImageUrl() const;

private:
    portable::SmartPointer<ArtistItem> artist() const;
    portable::SmartPointer<AlbumItem> album() const;
};

} // namespace airable
