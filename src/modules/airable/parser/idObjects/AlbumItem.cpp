#include "AlbumItem.h"

#include "ArtistItem.h"
#include "ContainerWithName.h"
#include "ImagesContainer.h"
#include "TrackItem.h"

namespace airable {

AlbumItem::AlbumItem(QString const& stype, QString const& id)
    : ListingContainer(stype, QStringLiteral("album"), id)
{
}

ContainerWithId::Ptr AlbumItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new AlbumItem(stype, id));
}

AirableVector<ContentItem::Ptr> AlbumItem::items() const
{
    return entriesOfClass<TrackItem>();
}

ArtistItem::Ptr AlbumItem::artist() const
{
    auto member = childByNameAs<ContainerWithName>(QLatin1String("artist"));
    return member ? member->firstChildOf<ArtistItem>() : ArtistItem::Ptr();
}

QString AlbumItem::artistId() const
{
    ArtistItem::Ptr const item = artist();
    return item ? item->name() : QString();
}

QString AlbumItem::artistTitle() const
{
    ArtistItem::Ptr const item = artist();
    return item ? item->title() : QString();
}

QString AlbumItem::artistImageUrl() const
{
    ArtistItem::Ptr const item = artist();
    return item ? ImagesContainer::firstImageUrl(*item) : QString();
}

} // namespace airable
