#include "ImageItem.h"

namespace airable {

ImageItem::ImageItem()
    : ContainerWithName(QStringLiteral(""))
{
}

ImageItem::ImageItem(ContainerWithName::Ptr& source)
    : ContainerWithName(source->name())
{
    for (AirableObject::Ptr const& child : source->children())
        appendChild(child);
}

ContainerWithName::Ptr ImageItem::create(QString const&)
{
    return ContainerWithName::Ptr(new ImageItem);
}

QString ImageItem::src() const
{
    return stringValueOf(QLatin1String("url"));
}

int ImageItem::width() const
{
    return intValueOf(QLatin1String("width"));
}

int ImageItem::height() const
{
    return intValueOf(QLatin1String("height"));
}

} // namespace airable
