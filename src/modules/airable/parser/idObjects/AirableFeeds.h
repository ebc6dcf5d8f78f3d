#pragma once

#include "BrowsableContentItem.h"

namespace airable {

// The podcast section of the cloud itself.
class AirableFeeds : public BrowsableContentItem
{
public:
    typedef portable::SmartPointer<AirableFeeds> Ptr;

    AirableFeeds(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;
};

} // namespace airable
