#pragma once

#include "ContainerWithName.h"

namespace airable {

// The buttons of a form or a message.
class ButtonsContainer : public ContainerWithName
{
public:
    typedef portable::SmartPointer<ButtonsContainer> Ptr;

    ButtonsContainer();

    ContainerWithName::Ptr create(QString const& name) override;

    AirableVector<AirableObject::Ptr> items() const { return children(); }
};

} // namespace airable
