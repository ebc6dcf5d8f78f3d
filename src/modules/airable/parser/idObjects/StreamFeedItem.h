#pragma once

#include "StreamItem.h"

namespace airable {

// A stream of a podcast episode.
class StreamFeedItem : public StreamItem
{
public:
    typedef portable::SmartPointer<StreamFeedItem> Ptr;

    StreamFeedItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;
};

} // namespace airable
