#include "DescriptionItem.h"

namespace airable {

DescriptionItem::DescriptionItem(QString const& stype, QString const& id)
    : ListingContainer(stype, QStringLiteral("description"), id)
{
}

DescriptionItem::DescriptionItem(QString const& stype, QString const& id, QString const& description)
    : ListingContainer(stype, QStringLiteral("description"), id)
    , mDescription(description)
{
}

ContainerWithId::Ptr DescriptionItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new DescriptionItem(stype, id));
}

bool DescriptionItem::browsable() const
{
    return false;
}

bool DescriptionItem::playable() const
{
    return false;
}

QString DescriptionItem::title() const
{
    return mDescription.toString(AirableText::Utf8);
}

} // namespace airable
