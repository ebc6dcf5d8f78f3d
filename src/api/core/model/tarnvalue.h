#pragma once

#include "cmpath.h"
#include "tarnhash.h"
#include "tarnoauth2.h"

// The stream bitrate setting, in the unit of the cloud's codec objects
// (kbit/s), with which it is compared as it stands; a plain number is a
// valid value, the names are the settings a user interface offers.
namespace TarnAirableStreamBitrate {
enum Enum : int {
    Low = 96,
    Medium = 192,
    High = 320,
    Unlimited = 10000000,
};
}

// The cloud settings as the platform hands them over.
class TarnAirableConfig : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnAirableConfig() = default;
    TarnAirableConfig(TarnHash const& h) : TarnHash(h) {}

    QString baseUrl() const { return value(QStringLiteral("baseUrl")).toString(); }
    QString secret() const { return value(QStringLiteral("secret")).toString(); }
    int pageSize() const { return value(QStringLiteral("pageSize")).toInt(); }

    TarnAirableConfig& setBaseUrl(QString const& v) { insert(QStringLiteral("baseUrl"), v); return *this; }
    TarnAirableConfig& setSecret(QString const& v) { insert(QStringLiteral("secret"), v); return *this; }
    TarnAirableConfig& setPageSize(int v) { insert(QStringLiteral("pageSize"), v); return *this; }
};

// Shown by the platform's notification display.
class TarnNotificationDisplayItem : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnNotificationDisplayItem() = default;
    TarnNotificationDisplayItem(TarnHash const& h) : TarnHash(h) {}

    QString text() const { return value(QStringLiteral("text")).toString(); }
    TarnNotificationDisplayItem& setText(QString const& v) { insert(QStringLiteral("text"), v); return *this; }
    TarnNotificationDisplayItem& setTitle(QString const& v) { insert(QStringLiteral("title"), v); return *this; }
    TarnNotificationDisplayItem& setIcon(QString const& v) { insert(QStringLiteral("icon"), v); return *this; }
    // The rows to show: a dialog's node path.
    TarnNotificationDisplayItem& setPath(CMPath const& p) { insert(QStringLiteral("path"), p.toEncoded()); return *this; }
    CMPath path() const { return CMPath::fromEncoded(value(QStringLiteral("path")).toString()); }
    // Higher numbers push lower ones off the display.
    TarnNotificationDisplayItem& setPriority(int v) { insert(QStringLiteral("priority"), v); return *this; }
    int priority() const { return value(QStringLiteral("priority")).toInt(); }
};

// A value of the platform: one typed field of a few known kinds.
class TarnValue : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnValue() = default;
    TarnValue(TarnHash const& h) : TarnHash(h) {}

    static QString const& StringKey();
    static QString const& BoolKey();
    static QString const& IntKey();
    static QString const& AirableConfigKey();
    static QString const& AirableStreamBitrateKey();
    static QString const& NotificationDisplayItemKey();
    static QString const& OAuth2InfoKey();

    QString string_() const { return value(StringKey()).toString(); }
    TarnValue& setString_(QString const& v) { insert(StringKey(), v); return *this; }
    bool bool_() const { return value(BoolKey()).toBool(); }
    TarnValue& setBool_(bool v) { insert(BoolKey(), v); return *this; }
    int int_() const { return value(IntKey()).toInt(); }
    TarnValue& setInt_(int v) { insert(IntKey(), v); return *this; }

    TarnAirableConfig airableConfig() const { return TarnAirableConfig(value(AirableConfigKey()).toHash()); }
    TarnValue& setAirableConfig(TarnAirableConfig const& c) { insert(AirableConfigKey(), c.__variant()); return *this; }

    TarnAirableStreamBitrate::Enum airableStreamBitrate() const
    {
        return TarnAirableStreamBitrate::Enum(value(AirableStreamBitrateKey()).toInt());
    }
    TarnValue& setAirableStreamBitrate(TarnAirableStreamBitrate::Enum b)
    {
        insert(AirableStreamBitrateKey(), int(b));
        return *this;
    }

    TarnNotificationDisplayItem notificationDisplayItem() const
    {
        return TarnNotificationDisplayItem(value(NotificationDisplayItemKey()).toHash());
    }
    TarnValue& setNotificationDisplayItem(TarnNotificationDisplayItem const& i)
    {
        insert(NotificationDisplayItemKey(), i.__variant());
        return *this;
    }

    TarnOAuth2Info oauth2Info() const { return TarnOAuth2Info(value(OAuth2InfoKey()).toHash()); }
    TarnValue& setOauth2Info(TarnOAuth2Info const& i)
    {
        insert(OAuth2InfoKey(), i.__variant());
        return *this;
    }

    // A value is read from a variant holding either a TarnValue or its hash.
    static TarnValue fromVariant(QVariant const& v);
};

Q_DECLARE_METATYPE(TarnValue)
