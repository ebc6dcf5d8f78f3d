#include "ContainerWithName.h"

namespace airable {

ContainerWithName::ContainerWithName(QString const& name)
    : mName(name)
{
}

ContainerWithName::ContainerWithName(AirableArena* arena, AirableText&& name)
    : AirableContainer(arena)
    , mName(std::move(name))
{
}

void ContainerWithName::dump(int const& depth)
{
    for (AirableObject* child : *this)
        child->dump(depth + 1);
}

ContainerWithName::Ptr ContainerWithName::create(QString const& name)
{
    return ContainerWithName::Ptr(new ContainerWithName(name));
}

} // namespace airable
