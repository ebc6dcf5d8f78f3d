#include "CollectionContainer.h"

namespace airable {

CollectionContainer::CollectionContainer()
    : ContainerWithName(QStringLiteral("collection"))
{
}

ContainerWithName::Ptr CollectionContainer::create(QString const&)
{
    return ContainerWithName::Ptr(new CollectionContainer);
}

int CollectionContainer::size() const
{
    return intValueOf(QLatin1String("size"));
}

int CollectionContainer::limit() const
{
    return intValueOf(QLatin1String("limit"));
}

int CollectionContainer::offset() const
{
    return intValueOf(QLatin1String("offset"));
}

} // namespace airable
