#pragma once

#include "ListingContainer.h"

namespace airable {

// A plain folder of entries.
class DirectoryItem : public ListingContainer
{
public:
    typedef portable::SmartPointer<DirectoryItem> Ptr;

    DirectoryItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;
};

} // namespace airable
