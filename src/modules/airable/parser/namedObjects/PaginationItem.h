#pragma once

#include "ContainerWithName.h"

namespace airable {

// How the pages of a listing are reached: "next", "prev", and "pages" with
// a URL template, the current page, the page values and "replace".
class PaginationItem : public ContainerWithName
{
public:
    typedef portable::SmartPointer<PaginationItem> Ptr;

    PaginationItem();

    ContainerWithName::Ptr create(QString const& name) override;

    QString next() const;
    QString prev() const;
    // A page URL with the placeholder ":value:" for the page number.
    QString url() const;
    // -1 when unknown.
    int current() const;
    QString replace() const;
    AirableVector<int> values() const;
};

} // namespace airable
