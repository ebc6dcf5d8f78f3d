#pragma once

#include "ListingContainer.h"

namespace airable {

// A text shown as a row of a list. Made by the code that shows it; the
// factory leaves "description" objects to the fallback.
class DescriptionItem : public ListingContainer
{
public:
    typedef portable::SmartPointer<DescriptionItem> Ptr;

    DescriptionItem(QString const& stype, QString const& id);
    DescriptionItem(QString const& stype, QString const& id, QString const& description);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    bool browsable() const override;
    bool playable() const override;
    // The text given at construction, not a "title" member.
    QString title() const override;

private:
    AirableText mDescription;
};

} // namespace airable
