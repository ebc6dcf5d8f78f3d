#include "EpisodeItem.h"

#include "StreamsContainer.h"

namespace airable {

EpisodeItem::EpisodeItem(QString const& stype, QString const& id)
    : ContentList(stype, QStringLiteral("feed.episode"), id)
{
}

ContainerWithId::Ptr EpisodeItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new EpisodeItem(stype, id));
}

bool EpisodeItem::browsable() const
{
    return !playable();
}

bool EpisodeItem::playable() const
{
    return !firstChildOf<StreamsContainer>().isNull();
}

// An entry "streams" stands for a listing of streams; it is shown as the
// first stream of that listing, or not at all.
AirableVector<ContentItem::Ptr> EpisodeItem::items() const
{
    AirableVector<ContentItem::Ptr> result;
    for (ContentItem::Ptr const& entry : entriesOfClass<ContentItem>()) {
        if (entry->name() != QLatin1String("streams")) {
            result.append(entry);
            continue;
        }
        EntriesContainer::Ptr const streams = entriesOf(*entry);
        StreamItem::Ptr const stream = streams ? streams->firstChildOf<StreamItem>() : StreamItem::Ptr();
        if (stream)
            result.append(stream);
    }
    return result;
}

AirableVector<StreamItem::Ptr> EpisodeItem::streams() const
{
    auto streams = firstChildOf<StreamsContainer>();
    return streams ? streams->childrenOf<StreamItem>() : AirableVector<StreamItem::Ptr>();
}

int EpisodeItem::duration() const
{
    return intValueOf(QLatin1String("duration"));
}

QString EpisodeItem::date() const
{
    return stringValueOf(QLatin1String("date"));
}

} // namespace airable
