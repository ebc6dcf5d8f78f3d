#include "tarnvalue.h"

#define TARN_KEY(name, text)                          \
    QString const& TarnValue::name()                  \
    {                                                 \
        static QString const s(QStringLiteral(text)); \
        return s;                                     \
    }

TARN_KEY(StringKey, "string")
TARN_KEY(BoolKey, "bool")
TARN_KEY(IntKey, "int")
TARN_KEY(AirableConfigKey, "airableConfig")
TARN_KEY(AirableStreamBitrateKey, "airableStreamBitrate")
TARN_KEY(NotificationDisplayItemKey, "notificationDisplayItem")
TARN_KEY(OAuth2InfoKey, "oauth2Info")

TarnValue TarnValue::fromVariant(QVariant const& v)
{
    if (v.userType() == qMetaTypeId<TarnValue>())
        return v.value<TarnValue>();
    if (v.userType() == qMetaTypeId<TarnHash>())
        return TarnValue(v.value<TarnHash>());
    return TarnValue(v.toHash());
}
