#include "OnAirContainer.h"

namespace airable {

OnAirContainer::OnAirContainer()
    : ContainerWithName(QStringLiteral("onair"))
{
}

ContainerWithName::Ptr OnAirContainer::create(QString const&)
{
    return ContainerWithName::Ptr(new OnAirContainer);
}

AirableVector<OnAirItem::Ptr> OnAirContainer::items() const
{
    return childrenOf<OnAirItem>();
}

} // namespace airable
