#include "EncryptionItem.h"

namespace airable {

EncryptionItem::EncryptionItem()
    : ContainerWithName(QStringLiteral("encryption"))
{
}

ContainerWithName::Ptr EncryptionItem::create(QString const&)
{
    return ContainerWithName::Ptr(new EncryptionItem);
}

QString EncryptionItem::type() const
{
    return stringValueOf(QLatin1String("type"));
}

HeadersItem::Ptr EncryptionItem::headers() const
{
    return childByNameAs<HeadersItem>(QLatin1String("headers"));
}

} // namespace airable
