#include "ServiceItem.h"

namespace airable {

ServiceItem::ServiceItem(QString const& stype, QString const& id)
    : BrowsableContentItem(stype, QStringLiteral("service"), id)
{
}

ContainerWithId::Ptr ServiceItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new ServiceItem(stype, id));
}

} // namespace airable
