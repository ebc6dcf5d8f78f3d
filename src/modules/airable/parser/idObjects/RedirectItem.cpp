#include "RedirectItem.h"

#include "ContainerWithName.h"
#include "ContentItem.h"

namespace airable {

RedirectItem::RedirectItem(QString const& stype, QString const& id)
    : ContainerWithId(stype, QStringLiteral("redirect"), id)
{
}

ContainerWithId::Ptr RedirectItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new RedirectItem(stype, id));
}

QString RedirectItem::url() const
{
    return stringValueOf(QLatin1String("url"));
}

EventsItem::Ptr RedirectItem::events() const
{
    return firstChildOf<EventsItem>();
}

EncryptionItem::Ptr RedirectItem::encryption() const
{
    return firstChildOf<EncryptionItem>();
}

ContentItem::Ptr RedirectItem::content() const
{
    auto content = childByNameAs<ContainerWithName>(QLatin1String("content"));
    return content ? content->firstChildOf<ContentItem>() : ContentItem::Ptr();
}

} // namespace airable
