#include "DirectoryItem.h"

namespace airable {

DirectoryItem::DirectoryItem(QString const& stype, QString const& id)
    : ListingContainer(stype, QStringLiteral("directory"), id)
{
}

ContainerWithId::Ptr DirectoryItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new DirectoryItem(stype, id));
}

} // namespace airable
