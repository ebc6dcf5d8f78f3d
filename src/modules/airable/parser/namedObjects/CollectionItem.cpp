#include "CollectionItem.h"

namespace airable {

CollectionItem::CollectionItem()
    : ContainerWithName(QStringLiteral("collection"))
{
}

ContainerWithName::Ptr CollectionItem::create(QString const&)
{
    return ContainerWithName::Ptr(new CollectionItem);
}

int CollectionItem::size() const
{
    return intValueOf(QLatin1String("size"));
}

int CollectionItem::limit() const
{
    return intValueOf(QLatin1String("limit"));
}

int CollectionItem::offset() const
{
    return intValueOf(QLatin1String("offset"));
}

} // namespace airable
