#include "ButtonsContainer.h"

namespace airable {

ButtonsContainer::ButtonsContainer()
    : ContainerWithName(QStringLiteral("buttons"))
{
}

ContainerWithName::Ptr ButtonsContainer::create(QString const&)
{
    return ContainerWithName::Ptr(new ButtonsContainer);
}

} // namespace airable
