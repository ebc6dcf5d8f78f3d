#include "device.h"

#include "auth.h"

#include <QDateTime>
#include <QUrl>

#include <httplib.h>
#include <rapidjson/pointer.h>

namespace {

qint64 nowSeconds()
{
    return QDateTime::currentMSecsSinceEpoch() / 1000;
}

std::string encoded(QString const& value)
{
    return QUrl::toPercentEncoding(value).toStdString();
}

} // namespace

Device::Device(cloudsim::CloudServer const& cloud, QString const& id)
    : mCloud(cloud), mId(id)
{
}

Device::~Device() = default;

void Device::setReadTimeoutMs(int ms)
{
    mReadTimeoutMs = ms;
    mHttp.reset();
}

std::string Device::Reply::string(char const* pointer) const
{
    if (json.IsNull())
        return std::string();
    rapidjson::Value const* v = rapidjson::Pointer(pointer).Get(json);
    return v && v->IsString() ? std::string(v->GetString(), v->GetStringLength()) : std::string();
}

bool Device::Reply::isErrorItem(char const* itemId) const
{
    return string("/id/1") == "error" && string("/id/2") == itemId;
}

Device::Reply Device::authenticateWith(QString const& salt, QString const& signature)
{
    return send("/authentication?device=" + encoded(mId) + "&name=Kitchen&version=1.0&locale=" + encoded(mLocale)
                    + "&salt=" + encoded(salt) + "&signature=" + signature.toStdString(),
                nullptr);
}

bool Device::authenticate(QString const& salt)
{
    QByteArray const signature = cloudsim::authenticationSignature(mId, mLocale, salt, mCloud.secret());
    Reply const reply = authenticateWith(salt, QString::fromLatin1(signature));
    rapidjson::Value const* time = reply.json.IsObject() ? rapidjson::Pointer("/time").Get(reply.json) : nullptr;
    if (reply.string("/id/1") != "accesstoken" || !time || !time->IsInt64())
        return false;
    mToken = QString::fromStdString(reply.string("/token"));
    mTime = static_cast<quint32>(time->GetInt64());
    mTimeReadAt = nowSeconds();
    return true;
}

Device::Reply Device::get(std::string const& pathAndQuery, int secondsOff)
{
    if (mToken.isEmpty())
        return send(pathAndQuery, nullptr);
    quint32 const time = mTime + static_cast<quint32>(nowSeconds() - mTimeReadAt) + secondsOff;
    std::string const header = cloudsim::authorizationValue(mToken, mCloud.secret(), time).toStdString();
    return send(pathAndQuery, header.c_str());
}

Device::Reply Device::getRaw(std::string const& pathAndQuery, char const* authorization)
{
    return send(pathAndQuery, authorization);
}

Device::Reply Device::send(std::string const& pathAndQuery, char const* authorization)
{
    httplib::Headers headers;
    if (authorization)
        headers.emplace("Authorization", authorization);
    // Made at first use: the cloud may start after the device was made.
    if (!mHttp) {
        mHttp.reset(new httplib::Client("127.0.0.1", mCloud.port()));
        mHttp->set_read_timeout(mReadTimeoutMs / 1000, (mReadTimeoutMs % 1000) * 1000);
    }
    Reply reply;
    auto result = mHttp->Get(pathAndQuery, headers);
    if (!result)
        return reply;
    reply.status = result->status;
    reply.body = result->body;
    reply.json.Parse(reply.body.c_str(), reply.body.size());
    if (reply.json.HasParseError())
        reply.json.SetNull();
    return reply;
}
