#include "ContainerWithName.h"

namespace airable {

ContainerWithName::ContainerWithName(QString const& name)
    : mName(name)
{
}

void ContainerWithName::dump(int const& depth)
{
    for (AirableObject::Ptr const& child : mChildren)
        child->dump(depth + 1);
}

ContainerWithName::Ptr ContainerWithName::create(QString const& name)
{
    return ContainerWithName::Ptr(new ContainerWithName(name));
}

} // namespace airable
