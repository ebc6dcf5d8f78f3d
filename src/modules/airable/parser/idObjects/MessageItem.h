#pragma once

#include "ListingContainer.h"

namespace airable {

// A message to show, with buttons as its rows.
class MessageItem : public ListingContainer
{
public:
    typedef portable::SmartPointer<MessageItem> Ptr;

    MessageItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    QString type() const;
    AirableVector<ContentItem::Ptr> items() const override;
    AirableVector<QString> perform() const;
    AirableVector<QString> reaction() const;
    bool hasReaction() const;
};

} // namespace airable
