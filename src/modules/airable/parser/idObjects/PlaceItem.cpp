#include "PlaceItem.h"

namespace airable {

PlaceItem::PlaceItem(QString const& stype, QString const& id)
    : BrowsableContentItem(stype, QStringLiteral("place"), id)
{
}

ContainerWithId::Ptr PlaceItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new PlaceItem(stype, id));
}

QString PlaceItem::iso() const
{
    return stringValueOf(QLatin1String("iso"));
}

QString PlaceItem::type() const
{
    return stringValueOf(QLatin1String("type"));
}

QVector<int> PlaceItem::geo() const
{
    QString const text = stringValueOf(QLatin1String("geo"));
    int const comma = text.indexOf(QLatin1Char(','));
    return QVector<int>{text.left(comma).toInt(nullptr, 10), text.mid(comma).toInt(nullptr, 10)};
}

} // namespace airable
