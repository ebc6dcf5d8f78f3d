#pragma once

#include "ContentItem.h"

namespace airable {

// An item that plays by its own streams.
class PlayableContentItem : public ContentItem
{
public:
    typedef portable::SmartPointer<PlayableContentItem> Ptr;

    PlayableContentItem(QString const& stype, QString const& itype, QString const& id);

    bool browsable() const override;
    bool playable() const override;
};

} // namespace airable
