#pragma once

#include "ListingContainer.h"
#include "EpisodeItem.h"
#include "LanguageItem.h"
#include "PlaceItem.h"

namespace airable {

// A podcast feed.
class FeedContainer : public ListingContainer
{
public:
    typedef portable::SmartPointer<FeedContainer> Ptr;

    FeedContainer(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    QString slogan() const;
    QString date() const;
    // Unlike a radio's, these members are the objects themselves.
    PlaceItem::Ptr place() const;
    LanguageItem::Ptr language() const;
    ListingContainer::Ptr genres() const;
    // The episodes of the entry "feed.<item id>.episodes".
    AirableVector<EpisodeItem::Ptr> episodes() const;
};

} // namespace airable
