#include "FormItem.h"

#include "ButtonItem.h"
#include "ButtonsContainer.h"
#include "FieldItem.h"
#include "FieldsContainer.h"

namespace airable {

FormItem::FormItem(QString const& stype, QString const& id)
    : ListingContainer(stype, QStringLiteral("form"), id)
{
}

ContainerWithId::Ptr FormItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new FormItem(stype, id));
}

QString FormItem::signUpLink() const
{
    return stringValueOf(QLatin1String("signup"));
}

AirableVector<ContentItem::Ptr> FormItem::items() const
{
    AirableVector<ContentItem::Ptr> result;
    if (auto fields = firstChildOf<FieldsContainer>()) {
        for (FieldItem::Ptr const& field : fields->childrenOf<FieldItem>())
            result.append(field);
    }
    if (auto buttons = firstChildOf<ButtonsContainer>()) {
        for (ButtonItem::Ptr const& button : buttons->childrenOf<ButtonItem>())
            result.append(button);
    }
    return result;
}

} // namespace airable
