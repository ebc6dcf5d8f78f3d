#include "ContentContainer.h"

namespace airable {

ContentContainer::ContentContainer()
    : ContainerWithName(QStringLiteral("content"))
{
}

ContainerWithName::Ptr ContentContainer::create(QString const&)
{
    return ContainerWithName::Ptr(new ContentContainer);
}

} // namespace airable
