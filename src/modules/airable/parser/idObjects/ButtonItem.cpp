#include "ButtonItem.h"

namespace airable {

ButtonItem::ButtonItem(QString const& stype, QString const& id)
    : ContentItem(stype, QStringLiteral("button"), id)
{
}

ContainerWithId::Ptr ButtonItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new ButtonItem(stype, id));
}

bool ButtonItem::browsable() const
{
    return false;
}

bool ButtonItem::playable() const
{
    return false;
}

QString ButtonItem::baseUrl() const
{
    return stringValueOf(QLatin1String("url"));
}

} // namespace airable
