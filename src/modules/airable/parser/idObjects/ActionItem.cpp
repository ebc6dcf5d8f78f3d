#include "ActionItem.h"

#include "ContainerWithName.h"

namespace airable {

ActionItem::ActionItem(QString const& stype, QString const& id)
    : ContainerWithId(stype, QStringLiteral("action"), id)
{
}

ContainerWithId::Ptr ActionItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new ActionItem(stype, id));
}

QString ActionItem::title() const
{
    return stringValueOf(QLatin1String("title"));
}

QString ActionItem::url() const
{
    return stringValueOf(QLatin1String("url"));
}

QString ActionItem::action() const
{
    return stringValueOf(QLatin1String("action"));
}

QString ActionItem::message() const
{
    return stringValueOf(QLatin1String("message"));
}

bool ActionItem::active() const
{
    return boolValueOf(QLatin1String("active"));
}

AirableVector<QString> ActionItem::perform() const
{
    auto list = childByNameAs<ContainerWithName>(QLatin1String("perform"));
    return list ? list->stringValues() : AirableVector<QString>();
}

AirableVector<QString> ActionItem::reaction() const
{
    auto list = childByNameAs<ContainerWithName>(QLatin1String("reaction"));
    return list ? list->stringValues() : AirableVector<QString>();
}

} // namespace airable
