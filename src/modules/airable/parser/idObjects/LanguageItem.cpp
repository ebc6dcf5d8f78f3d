#include "LanguageItem.h"

namespace airable {

LanguageItem::LanguageItem(QString const& stype, QString const& id)
    : BrowsableContentItem(stype, QStringLiteral("language"), id)
{
}

ContainerWithId::Ptr LanguageItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new LanguageItem(stype, id));
}

QString LanguageItem::iso() const
{
    return stringValueOf(QLatin1String("iso"));
}

} // namespace airable
