#include "FieldsContainer.h"

#include "FieldItem.h"

namespace airable {

FieldsContainer::FieldsContainer()
    : ContainerWithName(QStringLiteral("fields"))
{
}

ContainerWithName::Ptr FieldsContainer::create(QString const&)
{
    return ContainerWithName::Ptr(new FieldsContainer);
}

QString FieldsContainer::hiddenFields() const
{
    QString result;
    for (FieldItem::Ptr const& field : childrenOf<FieldItem>()) {
        if (field->type() != QLatin1String("hidden"))
            continue;
        if (!result.isEmpty())
            result += QLatin1Char('&');
        result += field->name() + QLatin1Char('=') + field->value();
    }
    return result;
}

} // namespace airable
