#pragma once

#include "ListingContainer.h"

namespace airable {

// A genre to browse by.
class GenreItem : public ListingContainer
{
public:
    typedef portable::SmartPointer<GenreItem> Ptr;

    GenreItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;
};

} // namespace airable
