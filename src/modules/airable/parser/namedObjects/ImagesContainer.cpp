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

ContainerWithName* ImagesContainer::lastElement() const
{
    for (auto child = end(); child != begin();) {
        --child;
        if (auto* element = dynamic_cast<ContainerWithName*>(*child))
            return element;
    }
    return nullptr;
}

ImageItem::Ptr ImagesContainer::lastImage() const
{
    ContainerWithName::Ptr source(lastElement());
    return source ? ImageItem::Ptr(new ImageItem(source)) : ImageItem::Ptr();
}

QString ImagesContainer::lastImageSrc(bool* found) const
{
    ContainerWithName const* const element = lastElement();
    *found = element != nullptr;
    // As ImageItem::src().
    return element ? element->stringValueOf(QLatin1String("url")) : QString();
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
