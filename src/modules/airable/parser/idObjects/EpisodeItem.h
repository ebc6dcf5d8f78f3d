#pragma once

#include "ContentList.h"
#include "StreamItem.h"

namespace airable {

// An episode of a podcast feed: it plays when it has streams and opens
// otherwise.
class EpisodeItem : public ContentList
{
public:
    typedef portable::SmartPointer<EpisodeItem> Ptr;

    EpisodeItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    bool browsable() const override;
    bool playable() const override;
    AirableVector<ContentItem::Ptr> items() const override;
    AirableVector<StreamItem::Ptr> streams() const;
    int duration() const;
    QString date() const;
};

} // namespace airable
