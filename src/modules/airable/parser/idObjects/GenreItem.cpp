#include "GenreItem.h"

namespace airable {

GenreItem::GenreItem(QString const& stype, QString const& id)
    : ListingContainer(stype, QStringLiteral("genre"), id)
{
}

ContainerWithId::Ptr GenreItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new GenreItem(stype, id));
}

} // namespace airable
