#pragma once

#include "ContainerWithId.h"

namespace airable {

// An entry of an item's context menu, or an order the cloud sends back.
class ActionItem : public ContainerWithId
{
public:
    typedef portable::SmartPointer<ActionItem> Ptr;

    ActionItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    QString title() const;
    QString url() const;
    QString action() const;
    QString message() const;
    bool active() const;
    AirableVector<QString> perform() const;
    AirableVector<QString> reaction() const;
};

} // namespace airable
