#pragma once

#include "ContainerWithName.h"
#include "ImageItem.h"

namespace airable {

// The images of an item.
class ImagesContainer : public ContainerWithName
{
public:
    typedef portable::SmartPointer<ImagesContainer> Ptr;

    ImagesContainer();

    ContainerWithName::Ptr create(QString const& name) override;

    AirableVector<ImageItem::Ptr> images() const;
    // The last of images(), or null; it makes no ImageItem for the others.
    ImageItem::Ptr lastImage() const;
    // lastImage()->src() without making the image; `*found` tells whether
    // there is one.
    QString lastImageSrc(bool* found) const;

    // The src() of the first image of the first images container of `owner`,
    // or empty.
    static QString firstImageUrl(AirableContainer const& owner);

private:
    // The last element of the array, the one lastImage() is made from.
    ContainerWithName* lastElement() const;
};

} // namespace airable
