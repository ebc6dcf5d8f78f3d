#include "AirableFeeds.h"

namespace airable {

AirableFeeds::AirableFeeds(QString const& stype, QString const& id)
    : BrowsableContentItem(stype, QStringLiteral("airable.feeds"), id)
{
}

ContainerWithId::Ptr AirableFeeds::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new AirableFeeds(stype, id));
}

} // namespace airable
