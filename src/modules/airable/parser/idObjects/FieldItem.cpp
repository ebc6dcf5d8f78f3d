#include "FieldItem.h"

#include "ContainerWithName.h"
#include "SimpleValue.h"

namespace airable {

FieldItem::FieldItem(QString const& stype, QString const& id)
    : ContentItem(stype, QStringLiteral("field"), id)
{
}

ContainerWithId::Ptr FieldItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new FieldItem(stype, id));
}

bool FieldItem::browsable() const
{
    return false;
}

bool FieldItem::playable() const
{
    return false;
}

QString FieldItem::type() const
{
    return stringValueOf(QLatin1String("type"));
}

QString FieldItem::value() const
{
    return stringValueOf(QLatin1String("value"));
}

bool FieldItem::required() const
{
    return boolValueOf(QLatin1String("required"));
}

QString FieldItem::optionName(int index) const
{
    auto options = childByNameAs<ContainerWithName>(QLatin1String("options"));
    if (!options)
        return QString();
    AirableVector<AirableObject::Ptr> const list = options->children();
    return index >= 0 && index < list.size() ? list.at(index)->name() : QString();
}

QVector<QPair<QString, QString>> FieldItem::options() const
{
    QVector<QPair<QString, QString>> result;
    auto options = childByNameAs<ContainerWithName>(QLatin1String("options"));
    if (!options)
        return result;
    for (AirableObject::Ptr const& option : options->children()) {
        // An option that is no text shows as an empty one.
        auto text = option.dynamicCast<SimpleValue<QString>>();
        result.append(qMakePair(option->name(), text ? text->value() : QString()));
    }
    return result;
}

} // namespace airable
