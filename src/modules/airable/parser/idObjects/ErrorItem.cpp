#include "ErrorItem.h"

#include "ContainerWithName.h"

namespace airable {

ErrorItem::ErrorItem(QString const& stype, QString const& id)
    : ContainerWithId(stype, QStringLiteral("error"), id)
{
}

ContainerWithId::Ptr ErrorItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new ErrorItem(stype, id));
}

QString ErrorItem::message() const
{
    return stringValueOf(QLatin1String("message"));
}

AirableVector<QString> ErrorItem::reaction() const
{
    auto list = childByNameAs<ContainerWithName>(QLatin1String("reaction"));
    return list ? list->stringValues() : AirableVector<QString>();
}

bool ErrorItem::hasReaction() const
{
    return !reaction().isEmpty();
}

} // namespace airable
