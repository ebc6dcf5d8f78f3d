#include "ListingContainer.h"

#include "ButtonItem.h"
#include "ContentContainer.h"
#include "SimpleValue.h"

#include <QStringList>

namespace airable {

ListingContainer::ListingContainer(QString const& stype, QString const& id)
    : ContentList(stype, QStringLiteral("listing"), id)
{
}

ContainerWithId::Ptr ListingContainer::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new ListingContainer(stype, id));
}

ListingContainer::ListingContainer(QString const& stype, QString const& itype, QString const& id)
    : ContentList(stype, itype, id)
{
}

bool ListingContainer::browsable() const
{
    return true;
}

bool ListingContainer::playable() const
{
    return false;
}

bool ListingContainer::containerPlayable() const
{
    QString const type = itype();
    if (type == QLatin1String("playlist") || type == QLatin1String("album") || type == QLatin1String("radio")
        || type == QLatin1String("listing"))
        return true;
    for (ContentItem::Ptr const& item : items()) {
        if (item->containerPlayable() || item->playable())
            return true;
    }
    return false;
}

AirableVector<ContentItem::Ptr> ListingContainer::items() const
{
    return entriesOfClass<ContentItem>();
}

QString ListingContainer::url(unsigned int page) const
{
    PaginationItem::Ptr const paging = pagination();
    return paging ? modifyUrlForPage(paging->url(), page) : QString();
}

PaginationItem::Ptr ListingContainer::pagination() const
{
    auto content = firstChildOf<ContentContainer>();
    return content ? content->firstChildOf<PaginationItem>() : PaginationItem::Ptr();
}

QString ListingContainer::modifyUrlForPage(QString url, unsigned int page)
{
    return url.replace(QLatin1String(":value:"), QString::number(page), Qt::CaseSensitive);
}

CollectionItem::Ptr ListingContainer::collection() const
{
    auto content = firstChildOf<ContentContainer>();
    return content ? content->firstChildOf<CollectionItem>() : CollectionItem::Ptr();
}

int ListingContainer::release(bool* ok) const
{
    auto value = childByNameAs<SimpleValue<int>>(QLatin1String("release"));
    if (ok)
        *ok = !value.isNull();
    return value ? value->value() : 0;
}

ButtonItem::Ptr ListingContainer::button(QString const& name) const
{
    auto buttons = childByNameAs<AirableContainer>(QLatin1String("buttons"));
    if (!buttons)
        return ButtonItem::Ptr();
    for (ButtonItem::Ptr const& button : buttons->childrenOf<ButtonItem>()) {
        if (button->name() == name)
            return button;
    }
    return ButtonItem::Ptr();
}

ButtonItem::Ptr ListingContainer::button(int kind) const
{
    static QStringList const forward{QStringLiteral("forward"), QStringLiteral("finish"), QStringLiteral("submit"),
                                     QStringLiteral("repeat")};
    static QStringList const backward{QStringLiteral("backward"), QStringLiteral("cancel")};
    QStringList const* accepted = kind == 1 ? &forward : kind == 2 ? &backward : nullptr;
    if (!accepted)
        return ButtonItem::Ptr();
    for (ContentItem::Ptr const& item : items()) {
        auto button = item.dynamicCast<ButtonItem>();
        if (button && accepted->contains(button->name()))
            return button;
    }
    return ButtonItem::Ptr();
}

} // namespace airable
