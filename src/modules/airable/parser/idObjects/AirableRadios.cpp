#include "AirableRadios.h"

namespace airable {

AirableRadios::AirableRadios(QString const& stype, QString const& id)
    : BrowsableContentItem(stype, QStringLiteral("airable.radios"), id)
{
}

ContainerWithId::Ptr AirableRadios::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new AirableRadios(stype, id));
}

} // namespace airable
