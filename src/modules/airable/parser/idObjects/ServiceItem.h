#pragma once

#include "BrowsableContentItem.h"

namespace airable {

// A music service reached through the cloud.
class ServiceItem : public BrowsableContentItem
{
public:
    typedef portable::SmartPointer<ServiceItem> Ptr;

    ServiceItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;
};

} // namespace airable
