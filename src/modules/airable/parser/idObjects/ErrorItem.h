#pragma once

#include "ContainerWithId.h"

namespace airable {

// A refusal of the cloud: a text for the user, or a reaction to carry out.
class ErrorItem : public ContainerWithId
{
public:
    typedef portable::SmartPointer<ErrorItem> Ptr;

    ErrorItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    QString message() const;
    AirableVector<QString> reaction() const;
    bool hasReaction() const;
};

} // namespace airable
