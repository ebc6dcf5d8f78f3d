#include "tarnvalue.h"
#include "tarnword.h"

TARN_WORD(TarnValue::StringKey, "string")
TARN_WORD(TarnValue::BoolKey, "bool")
TARN_WORD(TarnValue::IntKey, "int")
TARN_WORD(TarnValue::AirableConfigKey, "airableConfig")
TARN_WORD(TarnValue::AirableStreamBitrateKey, "airableStreamBitrate")
TARN_WORD(TarnValue::NotificationDisplayItemKey, "notificationDisplayItem")
TARN_WORD(TarnValue::OAuth2InfoKey, "oauth2Info")

TarnValue TarnValue::fromVariant(QVariant const& v)
{
    if (v.userType() == qMetaTypeId<TarnValue>())
        return v.value<TarnValue>();
    if (v.userType() == qMetaTypeId<TarnHash>())
        return TarnValue(v.value<TarnHash>());
    return TarnValue(v.toHash());
}
