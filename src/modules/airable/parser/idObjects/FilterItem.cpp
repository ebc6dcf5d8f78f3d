#include "FilterItem.h"

namespace airable {

FilterItem::FilterItem(QString const& stype, QString const& id)
    : BrowsableContentItem(stype, QStringLiteral("filter"), id)
{
}

ContainerWithId::Ptr FilterItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new FilterItem(stype, id));
}

} // namespace airable
