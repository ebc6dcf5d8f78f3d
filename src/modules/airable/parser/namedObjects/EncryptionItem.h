#pragma once

#include "ContainerWithName.h"
#include "HeadersItem.h"

namespace airable {

// How a stream is encrypted, and the headers of the calls that fetch its keys.
class EncryptionItem : public ContainerWithName
{
public:
    typedef portable::SmartPointer<EncryptionItem> Ptr;

    EncryptionItem();

    ContainerWithName::Ptr create(QString const& name) override;

    QString type() const;
    HeadersItem::Ptr headers() const;
};

} // namespace airable
