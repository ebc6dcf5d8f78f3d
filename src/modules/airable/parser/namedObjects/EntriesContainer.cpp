#include "EntriesContainer.h"

namespace airable {

EntriesContainer::EntriesContainer()
    : ContainerWithName(QStringLiteral("entries"))
{
}

ContainerWithName::Ptr EntriesContainer::create(QString const&)
{
    return ContainerWithName::Ptr(new EntriesContainer);
}

} // namespace airable
