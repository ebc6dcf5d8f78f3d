#pragma once

#include "ContainerWithName.h"

namespace airable {

// The skip limit of program playback. Unlike other records it reports a
// missing member, since the play logic cannot go on without it.
class SkipItem : public ContainerWithName
{
public:
    typedef portable::SmartPointer<SkipItem> Ptr;

    SkipItem();

    ContainerWithName::Ptr create(QString const& name) override;

    int available() const;
    QString statusUrl() const;
    QString skipUrl() const;
};

} // namespace airable
