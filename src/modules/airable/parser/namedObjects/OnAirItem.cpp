#include "OnAirItem.h"

namespace airable {

OnAirItem::OnAirItem()
    : ContainerWithName(QStringLiteral(""))
{
}

ContainerWithName::Ptr OnAirItem::create(QString const&)
{
    return ContainerWithName::Ptr(new OnAirItem);
}

ArtistItem::Ptr OnAirItem::artist() const
{
    return firstChildOf<ArtistItem>();
}

TrackItem::Ptr OnAirItem::track() const
{
    return firstChildOf<TrackItem>();
}

} // namespace airable
