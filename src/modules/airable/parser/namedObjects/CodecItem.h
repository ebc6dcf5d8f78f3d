#pragma once

#include "ContainerWithName.h"

namespace airable {

// The codec and bitrate of a stream.
class CodecItem : public ContainerWithName
{
public:
    typedef portable::SmartPointer<CodecItem> Ptr;

    CodecItem();

    ContainerWithName::Ptr create(QString const& name) override;

    QString codecName() const;
    int bitrate() const;
};

} // namespace airable
