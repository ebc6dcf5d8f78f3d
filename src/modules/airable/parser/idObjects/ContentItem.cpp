#include "ContentItem.h"

#include "ContainerWithName.h"

namespace airable {

ContentItem::ContentItem(QString const& stype, QString const& itype, QString const& id)
    : ContainerWithId(stype, itype, id)
{
}

QString ContentItem::title() const
{
    return stringValueOf(QLatin1String("title"));
}

QString ContentItem::url() const
{
    return stringValueOf(QLatin1String("url"));
}

QString ContentItem::imageUrl() const
{
    auto image = childByNameAs<ContainerWithName>(QLatin1String("image"));
    return image ? image->stringValueOf(QLatin1String("url")) : QString();
}

AirableVector<ActionItem::Ptr> ContentItem::actions() const
{
    auto list = childByNameAs<AirableContainer>(QLatin1String("actions"));
    return list ? list->childrenOf<ActionItem>() : AirableVector<ActionItem::Ptr>();
}

ActionItem::Ptr ContentItem::actionWithId(QString id) const
{
    for (ActionItem::Ptr const& action : actions()) {
        if (action->name() == id)
            return action;
    }
    return ActionItem::Ptr();
}

bool ContentItem::containerPlayable() const
{
    return false;
}

QString ContentItem::description() const
{
    return stringValueOf(QLatin1String("description"));
}

} // namespace airable
