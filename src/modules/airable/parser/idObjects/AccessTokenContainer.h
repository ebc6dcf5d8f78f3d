#pragma once

#include "ContainerWithId.h"

namespace airable {

// The device token that the cloud hands out on authentication.
class AccessTokenContainer : public ContainerWithId
{
public:
    typedef portable::SmartPointer<AccessTokenContainer> Ptr;

    AccessTokenContainer(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    QString accessToken() const;
    // The cloud's "time", run on by the seconds passed on the device since
    // the first read, so that no clock needs to be in step with the cloud's.
    unsigned int accessTime() const;

private:
    static quint32 nowSeconds();

    mutable quint32 mFirstReadTime = 0xFFFFFFFF;
};

} // namespace airable
