#include "PlaylistItem.h"

#include "TrackItem.h"

namespace airable {

PlaylistItem::PlaylistItem(QString const& stype, QString const& id)
    : ListingContainer(stype, QStringLiteral("playlist"), id)
{
}

ContainerWithId::Ptr PlaylistItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new PlaylistItem(stype, id));
}

AirableVector<ContentItem::Ptr> PlaylistItem::items() const
{
    return entriesOfClass<TrackItem>();
}

} // namespace airable
