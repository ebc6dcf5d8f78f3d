#include "ImagesContainer.h"

namespace airable {

ImagesContainer::ImagesContainer()
    : ContainerWithName(QStringLiteral("images"))
{
}

ContainerWithName::Ptr ImagesContainer::create(QString const&)
{
    return ContainerWithName::Ptr(new ImagesContainer);
}

AirableVector<ImageItem::Ptr> ImagesContainer::images() const
{
    AirableVector<ImageItem::Ptr> result;
    for (ContainerWithName::Ptr element : childrenOf<ContainerWithName>())
        result.append(ImageItem::Ptr(new ImageItem(element)));
    return result;
}

ImageItem::Ptr ImagesContainer::lastImage() const
{
    for (auto child = end(); child != begin();) {
        --child;
        if (auto* element = dynamic_cast<ContainerWithName*>(*child)) {
            ContainerWithName::Ptr source(element);
            return ImageItem::Ptr(new ImageItem(source));
        }
    }
    return ImageItem::Ptr();
}

QString ImagesContainer::lastImageSrc(bool* found) const
{
    for (auto child = end(); child != begin();) {
        --child;
        if (auto* element = dynamic_cast<ContainerWithName*>(*child)) {
            *found = true;
            // As ImageItem::src().
            return element->stringValueOf(QLatin1String("url"));
        }
    }
    *found = false;
    return QString();
}

QString ImagesContainer::firstImageUrl(AirableContainer const& owner)
{
    auto container = owner.firstChildOf<ImagesContainer>();
    if (!container)
        return QString();
    AirableVector<ImageItem::Ptr> const list = container->images();
    return list.isEmpty() ? QString() : list.first()->src();
}

} // namespace airable
