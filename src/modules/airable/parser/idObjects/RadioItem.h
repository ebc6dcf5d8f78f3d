#pragma once

#include "ListingContainer.h"
#include "LanguageItem.h"
#include "OnAirItem.h"
#include "PlaceItem.h"
#include "StreamItem.h"

namespace airable {

// A radio station. It plays when it has at least one stream and opens
// otherwise.
class RadioItem : public ListingContainer
{
public:
    typedef portable::SmartPointer<RadioItem> Ptr;

    RadioItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    bool browsable() const override;
    bool playable() const override;
    AirableVector<ContentItem::Ptr> items() const override;
    QString slogan() const;
    // The members "place" and "language" hold the objects one level down.
    PlaceItem::Ptr place() const;
    LanguageItem::Ptr language() const;
    ListingContainer::Ptr genres() const;
    AirableVector<OnAirItem::Ptr> onAirItems() const;
    AirableVector<StreamItem::Ptr> streams() const;
    // The attributes of the radio's stream, whose type word is always "stream".
    QString streamAttributes() const;
};

} // namespace airable
