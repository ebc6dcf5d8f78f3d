#pragma once

#include "ContainerWithId.h"
#include "ActionItem.h"

namespace airable {

// Anything that shows as a row: whether it opens, plays, or plays as a whole
// through its contents is up to the class.
class ContentItem : public ContainerWithId
{
public:
    typedef portable::SmartPointer<ContentItem> Ptr;

    ContentItem(QString const& stype, QString const& itype, QString const& id);

    virtual QString title() const;
    virtual QString url() const;
    virtual QString imageUrl() const;
    virtual AirableVector<ActionItem::Ptr> actions() const;
    virtual ActionItem::Ptr actionWithId(QString id) const;
    virtual bool playable() const = 0;
    virtual bool containerPlayable() const;
    virtual QString description() const;

    bool browsable() const override = 0;
};

} // namespace airable
