#pragma once

#include "ListingContainer.h"

namespace airable {

// A form to fill in: its rows are its fields followed by its buttons.
class FormItem : public ListingContainer
{
public:
    typedef portable::SmartPointer<FormItem> Ptr;

    FormItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    QString signUpLink() const;
    AirableVector<ContentItem::Ptr> items() const override;
};

} // namespace airable
