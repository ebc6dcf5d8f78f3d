#pragma once

#include "ContainerWithName.h"

namespace airable {

// Lists of HTTP header lines, one list per kind of request.
class HeadersItem : public ContainerWithName
{
public:
    typedef portable::SmartPointer<HeadersItem> Ptr;

    HeadersItem();

    ContainerWithName::Ptr create(QString const& name) override;

    // The string values of the list under `key`; empty when it is missing.
    AirableVector<QString> genericItems(QString const& key) const;
    AirableVector<QString> key() const;
    AirableVector<QString> manifest() const;
    AirableVector<QString> audio() const;
};

} // namespace airable
