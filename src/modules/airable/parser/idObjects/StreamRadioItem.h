#pragma once

#include "StreamItem.h"

namespace airable {

// A stream of a radio.
class StreamRadioItem : public StreamItem
{
public:
    typedef portable::SmartPointer<StreamRadioItem> Ptr;

    StreamRadioItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;
};

} // namespace airable
