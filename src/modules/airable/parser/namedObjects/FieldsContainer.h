#pragma once

#include "ContainerWithName.h"

namespace airable {

// The fields of a form.
class FieldsContainer : public ContainerWithName
{
public:
    typedef portable::SmartPointer<FieldsContainer> Ptr;

    FieldsContainer();

    ContainerWithName::Ptr create(QString const& name) override;

    AirableVector<AirableObject::Ptr> items() const { return children(); }
    // "name=value&name=value" of the hidden fields, unencoded, ready to be
    // appended to a query.
    QString hiddenFields() const;
};

} // namespace airable
