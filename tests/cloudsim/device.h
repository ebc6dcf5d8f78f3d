#pragma once

#include "cloudserver.h"
#include "patience.h"

#include <QString>

#include <rapidjson/document.h>

#include <memory>
#include <string>

namespace httplib {
class Client;
class Result;
} // namespace httplib

// Talks to the simulated cloud as a device does: signs its authentication,
// and sends the "Authorization" header built from the token it got.
class Device
{
public:
    explicit Device(cloudsim::CloudServer const& cloud, QString const& id = "00:11:22:33:44:55");
    ~Device();

    struct Reply
    {
        int status = 0; // 0: no HTTP answer at all
        std::string body;
        rapidjson::Document json; // null when the body is no JSON

        std::string string(char const* pointer) const;
        bool isErrorItem(char const* itemId) const;
    };

    bool authenticate(QString const& salt = "s4Lt");
    Reply authenticateWith(QString const& salt, QString const& signature);
    // secondsOff moves the time in the header away from the cloud's clock.
    Reply get(std::string const& pathAndQuery, int secondsOff = 0);
    Reply getRaw(std::string const& pathAndQuery, char const* authorization);
    void setReadTimeoutMs(int ms);
    // The locale the next authentication gives, "en-US" until set.
    void setLocale(QString const& locale) { mLocale = locale; }

    QString token() const { return mToken; }
    QString id() const { return mId; }

private:
    Reply send(std::string const& pathAndQuery, char const* authorization);

    cloudsim::CloudServer const& mCloud;
    QString const mId;
    QString mLocale = QStringLiteral("en-US");
    std::unique_ptr<httplib::Client> mHttp;
    int mReadTimeoutMs = kPatienceMs;
    QString mToken;
    quint32 mTime = 0;
    qint64 mTimeReadAt = 0;
};
