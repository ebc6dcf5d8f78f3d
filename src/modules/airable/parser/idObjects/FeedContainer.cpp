#include "FeedContainer.h"

namespace airable {

FeedContainer::FeedContainer(QString const& stype, QString const& id)
    : ListingContainer(stype, QStringLiteral("feed"), id)
{
}

ContainerWithId::Ptr FeedContainer::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new FeedContainer(stype, id));
}

QString FeedContainer::slogan() const
{
    return stringValueOf(QLatin1String("slogan"));
}

QString FeedContainer::date() const
{
    return stringValueOf(QLatin1String("date"));
}

PlaceItem::Ptr FeedContainer::place() const
{
    return childByNameAs<PlaceItem>(QLatin1String("place"));
}

LanguageItem::Ptr FeedContainer::language() const
{
    return childByNameAs<LanguageItem>(QLatin1String("language"));
}

ListingContainer::Ptr FeedContainer::genres() const
{
    return childByNameAs<ListingContainer>(QLatin1String("genres"));
}

AirableVector<EpisodeItem::Ptr> FeedContainer::episodes() const
{
    AirableVector<EpisodeItem::Ptr> result;
    EntriesContainer::Ptr const entries = entriesOf(*this);
    if (!entries)
        return result;
    QString const key = QLatin1String("feed.") + mId.toString(AirableText::Utf8) + QLatin1String(".episodes");
    auto listing = entries->childByName(key).dynamicCast<ListingContainer>();
    if (!listing)
        return result;
    for (ContentItem::Ptr const& item : listing->items()) {
        if (auto episode = item.dynamicCast<EpisodeItem>())
            result.append(episode);
    }
    return result;
}

} // namespace airable
