#include "MessageItem.h"

#include "ButtonItem.h"
#include "ButtonsContainer.h"
#include "ContainerWithName.h"

namespace airable {

MessageItem::MessageItem(QString const& stype, QString const& id)
    : ListingContainer(stype, QStringLiteral("message"), id)
{
}

ContainerWithId::Ptr MessageItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new MessageItem(stype, id));
}

QString MessageItem::type() const
{
    return stringValueOf(QLatin1String("type"));
}

AirableVector<ContentItem::Ptr> MessageItem::items() const
{
    AirableVector<ContentItem::Ptr> result;
    if (auto buttons = firstChildOf<ButtonsContainer>()) {
        for (ButtonItem::Ptr const& button : buttons->childrenOf<ButtonItem>())
            result.append(button);
    }
    return result;
}

AirableVector<QString> MessageItem::perform() const
{
    auto list = childByNameAs<ContainerWithName>(QLatin1String("perform"));
    return list ? list->stringValues() : AirableVector<QString>();
}

AirableVector<QString> MessageItem::reaction() const
{
    auto list = childByNameAs<ContainerWithName>(QLatin1String("reaction"));
    return list ? list->stringValues() : AirableVector<QString>();
}

bool MessageItem::hasReaction() const
{
    return !reaction().isEmpty() || !perform().isEmpty();
}

} // namespace airable
