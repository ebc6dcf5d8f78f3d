#include "TrackItem.h"

#include "AlbumItem.h"
#include "ArtistItem.h"
#include "ContainerWithName.h"
#include "ImagesContainer.h"
#include "StreamsContainer.h"

namespace airable {

TrackItem::TrackItem(QString const& stype, QString const& id)
    : PlayableContentItem(stype, QStringLiteral("track"), id)
{
}

ContainerWithId::Ptr TrackItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new TrackItem(stype, id));
}

AirableVector<StreamItem::Ptr> TrackItem::streams() const
{
    auto streams = firstChildOf<StreamsContainer>();
    return streams ? streams->childrenOf<StreamItem>() : AirableVector<StreamItem::Ptr>();
}

int TrackItem::duration() const
{
    return intValueOf(QLatin1String("duration"));
}

EventsItem::Ptr TrackItem::events() const
{
    return firstChildOf<EventsItem>();
}

ArtistItem::Ptr TrackItem::artist() const
{
    auto member = childByNameAs<ContainerWithName>(QLatin1String("artist"));
    return member ? member->firstChildOf<ArtistItem>() : ArtistItem::Ptr();
}

AlbumItem::Ptr TrackItem::album() const
{
    auto member = childByNameAs<ContainerWithName>(QLatin1String("album"));
    return member ? member->firstChildOf<AlbumItem>() : AlbumItem::Ptr();
}

QString TrackItem::artistId() const
{
    ArtistItem::Ptr const item = artist();
    return item ? item->name() : QString();
}

QString TrackItem::artistTitle() const
{
    ArtistItem::Ptr const item = artist();
    return item ? item->title() : QString();
}

QString TrackItem::artistImageUrl() const
{
    ArtistItem::Ptr const item = artist();
    return item ? ImagesContainer::firstImageUrl(*item) : QString();
}

QString TrackItem::albumId() const
{
    AlbumItem::Ptr const item = album();
    return item ? item->name() : QString();
}

QString TrackItem::albumTitle() const
{
    AlbumItem::Ptr const item = album();
    return item ? item->title() : QString();
}

QString TrackItem::albumImageUrl() const
{
    AlbumItem::Ptr const item = album();
    return item ? ImagesContainer::firstImageUrl(*item) : QString();
}

} // namespace airable
