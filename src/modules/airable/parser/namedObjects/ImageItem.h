#pragma once

#include "ContainerWithName.h"

namespace airable {

// One element of an "images" array, made on demand by ImagesContainer.
class ImageItem : public ContainerWithName
{
public:
    typedef portable::SmartPointer<ImageItem> Ptr;

    ImageItem();
    // Takes over the name and the children of an anonymous array element.
    explicit ImageItem(ContainerWithName::Ptr& source);

    ContainerWithName::Ptr create(QString const& name) override;

    QString src() const;
    int width() const;
    int height() const;
};

} // namespace airable
