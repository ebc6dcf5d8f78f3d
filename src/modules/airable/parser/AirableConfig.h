#pragma once

#include "Portable_ReferenceCountedObject.h"
#include "tarnvalue.h"

#include <QString>

namespace airable {

// The device's identity towards the cloud and its browsing preferences.
class AirableConfig : public portable::ReferenceCountedObject
{
public:
    typedef portable::SmartPointer<AirableConfig> Ptr;

    static Ptr create();

    virtual bool setBaseUrl(QString const& url) = 0;
    virtual bool setDeviceId(QString const& id) = 0;
    virtual bool setDeviceName(QString const& name) = 0;
    virtual bool setVersion(QString const& version) = 0;
    virtual bool setLocale(QString const& locale) = 0;
    virtual bool setSecret(QString const& secret) = 0;
    virtual bool setBitrate(TarnAirableStreamBitrate::Enum bitrate) = 0;
    virtual bool setPageSize(int pageSize) = 0;

    virtual QString const& baseUrl() = 0;
    virtual QString const& deviceId() = 0;
    virtual QString const& deviceName() = 0;
    virtual QString const& version() = 0;
    virtual QString const& locale() = 0;
    // A fresh random salt of 16 characters for one authentication.
    virtual QString generateSalt() = 0;
    virtual QString const& secret() = 0;
    virtual TarnAirableStreamBitrate::Enum bitrate() = 0;
    virtual int pageSize() = 0;
};

} // namespace airable
