#pragma once

#include <QHash>
#include <QQueue>
#include <QString>

#include <mutex>

namespace cloudsim {

// Access tokens handed out by "/authentication" and the check of the header
// that later requests carry. Only the latest kKept tokens are known: a
// device whose token was forgotten is refused it as unknown and
// authenticates again, as after an expiry.
class TokenStore
{
public:
    enum class Verdict
    {
        Valid,
        Missing,
        Malformed,
        UnknownToken,
        WrongDigest,
        Expired,
    };

    static constexpr int kKept = 1000;

    struct Token
    {
        QString text;
        quint32 time = 0;
    };

    TokenStore(QString const& secret, int lifetimeSeconds, int clockSkewSeconds);

    // A token belongs to the device that authenticated for it, and speaks
    // the locale the device gave then.
    Token issue(QString const& device, QString const& locale);
    // On Valid, *device and *locale (if given) are those the token was
    // issued for.
    Verdict check(QString const& authorization, QString* device = nullptr, QString* locale = nullptr) const;
    void expireAll();
    void setLifetime(int seconds);

    static char const* describe(Verdict verdict);

private:
    struct Issued
    {
        qint64 issuedAt;
        bool expired;
        QString device;
        QString locale;
    };

    QString const mSecret;
    int const mClockSkew;
    mutable std::mutex mMutex;
    int mLifetime;
    QHash<QString, Issued> mTokens;
    // The tokens in the order they were handed out.
    QQueue<QString> mIssueOrder;
};

// Seconds since the epoch, the cloud's clock.
qint64 cloudTime();

} // namespace cloudsim
