#include "HeadersItem.h"

namespace airable {

HeadersItem::HeadersItem()
    : ContainerWithName(QStringLiteral("headers"))
{
}

ContainerWithName::Ptr HeadersItem::create(QString const&)
{
    return ContainerWithName::Ptr(new HeadersItem);
}

AirableVector<QString> HeadersItem::genericItems(QString const& key) const
{
    auto list = childByName(key).dynamicCast<ContainerWithName>();
    return list ? list->stringValues() : AirableVector<QString>();
}

AirableVector<QString> HeadersItem::key() const
{
    return genericItems(QStringLiteral("key"));
}

AirableVector<QString> HeadersItem::manifest() const
{
    return genericItems(QStringLiteral("manifest"));
}

AirableVector<QString> HeadersItem::audio() const
{
    return genericItems(QStringLiteral("audio"));
}

} // namespace airable
