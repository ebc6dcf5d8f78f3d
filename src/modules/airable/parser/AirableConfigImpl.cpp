#include "AirableConfigImpl.h"
#include "AirableObjectFactory.h"

#include <cstdlib>
#include <ctime>

namespace airable {

AirableConfig::Ptr AirableConfig::create()
{
    return Ptr(new AirableConfigImpl);
}

AirableConfigImpl::AirableConfigImpl()
    : mLocale(QStringLiteral("en-US"))
    , mBitrate(TarnAirableStreamBitrate::Enum(10000000))
    , mPageSize(0)
{
    // Making the configuration brings the object factory up.
    AirableObjectFactory::instance();
}

bool AirableConfigImpl::setBaseUrl(QString const& url)
{
    mBaseUrl = url;
    return true;
}

bool AirableConfigImpl::setDeviceId(QString const& id)
{
    mDeviceId = id;
    return true;
}

bool AirableConfigImpl::setDeviceName(QString const& name)
{
    mDeviceName = name;
    return true;
}

bool AirableConfigImpl::setVersion(QString const& version)
{
    mVersion = version;
    return true;
}

bool AirableConfigImpl::setLocale(QString const& locale)
{
    mLocale = locale;
    return true;
}

bool AirableConfigImpl::setSecret(QString const& secret)
{
    mSecret = secret;
    return true;
}

bool AirableConfigImpl::setBitrate(TarnAirableStreamBitrate::Enum bitrate)
{
    mBitrate = bitrate;
    return true;
}

bool AirableConfigImpl::setPageSize(int pageSize)
{
    mPageSize = pageSize;
    return true;
}

QString AirableConfigImpl::generateSalt()
{
    // 62 letters and the terminating zero: the modulus 63 lets the zero be
    // drawn, so about one character in 63 is U+0000. The cloud accepts it,
    // since it receives the same characters as were hashed.
    static char const alphabet[] = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    static_assert(sizeof(alphabet) == 63, "62 letters and the zero");

    // Seeding from the previous output as well as the clock keeps two salts
    // of the same second apart. The sum wraps in 32 bits.
    std::srand(static_cast<unsigned>(static_cast<std::uint32_t>(std::rand()) +
                                     static_cast<std::uint32_t>(std::time(nullptr))));
    QString salt;
    while (salt.length() < 16)
        salt.append(QChar::fromLatin1(alphabet[std::rand() % 63]));
    return salt;
}

} // namespace airable
