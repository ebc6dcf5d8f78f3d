#pragma once

#include "PlayableContentItem.h"
#include "CodecItem.h"

namespace airable {

// One stream of a playable item, with its codec.
class StreamItem : public PlayableContentItem
{
public:
    typedef portable::SmartPointer<StreamItem> Ptr;

    StreamItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    virtual CodecItem::Ptr codec() const;

protected:
    // For subclasses, which bring their own type word.
    StreamItem(QString const& stype, QString const& itype, QString const& id);
};

} // namespace airable
