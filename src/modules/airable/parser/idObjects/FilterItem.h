#pragma once

#include "BrowsableContentItem.h"

namespace airable {

// A filter that narrows a listing.
class FilterItem : public BrowsableContentItem
{
public:
    typedef portable::SmartPointer<FilterItem> Ptr;

    FilterItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;
};

} // namespace airable
