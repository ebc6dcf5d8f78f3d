#pragma once

#include "BrowsableContentItem.h"

namespace airable {

// The radio section of the cloud itself.
class AirableRadios : public BrowsableContentItem
{
public:
    typedef portable::SmartPointer<AirableRadios> Ptr;

    AirableRadios(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;
};

} // namespace airable
