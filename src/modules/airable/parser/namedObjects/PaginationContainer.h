#pragma once

#include "ContainerWithName.h"

namespace airable {

// Kept beside PaginationItem, without replace(); the factory never makes it.
class PaginationContainer : public ContainerWithName
{
public:
    typedef portable::SmartPointer<PaginationContainer> Ptr;

    PaginationContainer();

    ContainerWithName::Ptr create(QString const& name) override;

    QString next() const;
    QString prev() const;
    // A page URL with the placeholder ":value:" for the page number.
    QString url() const;
    // -1 when unknown.
    int current() const;
    AirableVector<int> values() const;
};

} // namespace airable
