#include "StreamsContainer.h"

namespace airable {

StreamsContainer::StreamsContainer()
    : ContainerWithName(QStringLiteral("streams"))
{
}

ContainerWithName::Ptr StreamsContainer::create(QString const&)
{
    return ContainerWithName::Ptr(new StreamsContainer);
}

} // namespace airable
