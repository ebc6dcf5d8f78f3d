#pragma once

#include "ListingContainer.h"
#include "SkipItem.h"
#include "TrackItem.h"

namespace airable {

// A station of a music service, played by the play logic rather than by
// streams of its own.
class ProgramItem : public ListingContainer
{
public:
    typedef portable::SmartPointer<ProgramItem> Ptr;

    ProgramItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    bool browsable() const override;
    bool playable() const override;
    // "title" is either a text or an object that holds one.
    QString title() const override;
    SkipItem::Ptr skip() const;
    AirableVector<TrackItem::Ptr> tracks() const;
};

} // namespace airable
