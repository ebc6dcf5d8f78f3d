#include "RadioItem.h"

#include "ContainerWithName.h"
#include "OnAirContainer.h"
#include "StreamsContainer.h"

namespace airable {

RadioItem::RadioItem(QString const& stype, QString const& id)
    : ListingContainer(stype, QStringLiteral("radio"), id)
{
}

ContainerWithId::Ptr RadioItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new RadioItem(stype, id));
}

bool RadioItem::browsable() const
{
    return !playable();
}

bool RadioItem::playable() const
{
    // As !streams().isEmpty(), without the list: every row asks.
    auto streams = childByNameAs<StreamsContainer>(QLatin1String("streams"));
    return streams && streams->firstChildOf<StreamItem>();
}

// Entries that stand for the radio's streams are not shown as rows.
AirableVector<ContentItem::Ptr> RadioItem::items() const
{
    AirableVector<ContentItem::Ptr> result;
    for (ContentItem::Ptr const& entry : entriesOfClass<ContentItem>()) {
        if (!entry->name().contains(QLatin1String("streams"), Qt::CaseSensitive))
            result.append(entry);
    }
    return result;
}

QString RadioItem::slogan() const
{
    return stringValueOf(QLatin1String("slogan"));
}

PlaceItem::Ptr RadioItem::place() const
{
    auto member = childByNameAs<ContainerWithName>(QLatin1String("place"));
    return member ? member->firstChildOf<PlaceItem>() : PlaceItem::Ptr();
}

LanguageItem::Ptr RadioItem::language() const
{
    auto member = childByNameAs<ContainerWithName>(QLatin1String("language"));
    return member ? member->firstChildOf<LanguageItem>() : LanguageItem::Ptr();
}

ListingContainer::Ptr RadioItem::genres() const
{
    return childByNameAs<ListingContainer>(QLatin1String("genres"));
}

AirableVector<OnAirItem::Ptr> RadioItem::onAirItems() const
{
    auto onAir = childByNameAs<OnAirContainer>(QLatin1String("onair"));
    return onAir ? onAir->items() : AirableVector<OnAirItem::Ptr>();
}

AirableVector<StreamItem::Ptr> RadioItem::streams() const
{
    auto streams = childByNameAs<StreamsContainer>(QLatin1String("streams"));
    return streams ? streams->childrenOf<StreamItem>() : AirableVector<StreamItem::Ptr>();
}

QString RadioItem::streamAttributes() const
{
    return QLatin1String("itype=\"stream\" stype=\"") + stype() + QLatin1String("\" itemid=\"") + mId.toString(AirableText::Utf8)
        + QLatin1Char('"');
}

} // namespace airable
