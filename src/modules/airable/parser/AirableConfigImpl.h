#pragma once

#include "AirableConfig.h"

namespace airable {

class AirableConfigImpl : public AirableConfig
{
public:
    typedef portable::SmartPointer<AirableConfigImpl> Ptr;

    AirableConfigImpl();

    bool setBaseUrl(QString const& url) override;
    bool setDeviceId(QString const& id) override;
    bool setDeviceName(QString const& name) override;
    bool setVersion(QString const& version) override;
    bool setLocale(QString const& locale) override;
    bool setSecret(QString const& secret) override;
    bool setBitrate(TarnAirableStreamBitrate::Enum bitrate) override;
    bool setPageSize(int pageSize) override;

    QString const& baseUrl() override { return mBaseUrl; }
    QString const& deviceId() override { return mDeviceId; }
    QString const& deviceName() override { return mDeviceName; }
    QString const& version() override { return mVersion; }
    QString const& locale() override { return mLocale; }
    QString generateSalt() override;
    QString const& secret() override { return mSecret; }
    TarnAirableStreamBitrate::Enum bitrate() override { return mBitrate; }
    int pageSize() override { return mPageSize; }

private:
    QString mBaseUrl;
    QString mDeviceId;
    QString mDeviceName;
    QString mVersion;
    QString mLocale;
    QString mSecret; // goes into signatures only, never on the wire
    TarnAirableStreamBitrate::Enum mBitrate;
    int mPageSize;
};

} // namespace airable
