#include "ArtistItem.h"

namespace airable {

ArtistItem::ArtistItem(QString const& stype, QString const& id)
    : ListingContainer(stype, QStringLiteral("artist"), id)
{
}

ContainerWithId::Ptr ArtistItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new ArtistItem(stype, id));
}

// An artist shows lists (albums, playlists), never single tracks.
AirableVector<ContentItem::Ptr> ArtistItem::items() const
{
    return entriesOfClass<ContentList>();
}

} // namespace airable
