#include "tokenstore.h"

#include "auth.h"

#include <QByteArray>
#include <QDateTime>
#include <QRandomGenerator>

namespace cloudsim {

qint64 cloudTime()
{
    return QDateTime::currentMSecsSinceEpoch() / 1000;
}

TokenStore::TokenStore(QString const& secret, int lifetimeSeconds, int clockSkewSeconds)
    : mSecret(secret), mClockSkew(clockSkewSeconds), mLifetime(lifetimeSeconds)
{
}

TokenStore::Token TokenStore::issue(QString const& device, QString const& locale)
{
    QByteArray raw(16, Qt::Uninitialized);
    QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(raw.data()), raw.size() / 4);
    Token token{QString::fromLatin1(raw.toHex()), static_cast<quint32>(cloudTime())};
    std::lock_guard<std::mutex> lock(mMutex);
    mTokens.insert(token.text, Issued{cloudTime(), false, device, locale});
    mIssueOrder.enqueue(token.text);
    while (mIssueOrder.size() > kKept)
        mTokens.remove(mIssueOrder.dequeue());
    return token;
}

TokenStore::Verdict TokenStore::check(QString const& authorization, QString* device, QString* locale) const
{
    if (authorization.isEmpty())
        return Verdict::Missing;
    if (!authorization.startsWith("Basic "))
        return Verdict::Malformed;
    QString const credentials = QString::fromUtf8(QByteArray::fromBase64(authorization.mid(6).toLatin1()));
    int const colon = credentials.indexOf(':');
    if (colon < 0)
        return Verdict::Malformed;
    QString const token = credentials.left(colon);

    qint64 const now = cloudTime();
    Issued holder{};
    {
        std::lock_guard<std::mutex> lock(mMutex);
        auto const found = mTokens.constFind(token);
        if (found == mTokens.constEnd())
            return Verdict::UnknownToken;
        if (found->expired || now >= found->issuedAt + mLifetime)
            return Verdict::Expired;
        holder = *found;
    }
    // The device runs the cloud's clock on from its own, so its idea of the
    // time may be a little off in either direction.
    for (qint64 t = now - mClockSkew; t <= now + mClockSkew; ++t) {
        if (authorizationValue(token, mSecret, static_cast<quint32>(t)) == authorization) {
            if (device)
                *device = holder.device;
            if (locale)
                *locale = holder.locale;
            return Verdict::Valid;
        }
    }
    return Verdict::WrongDigest;
}

void TokenStore::expireAll()
{
    std::lock_guard<std::mutex> lock(mMutex);
    for (auto& issued : mTokens)
        issued.expired = true;
}

void TokenStore::setLifetime(int seconds)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mLifetime = seconds;
}

char const* TokenStore::describe(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Valid:
        return "valid";
    case Verdict::Missing:
        return "Authorization header missing";
    case Verdict::Malformed:
        return "Authorization header malformed";
    case Verdict::UnknownToken:
        return "Unknown access token";
    case Verdict::WrongDigest:
        return "Authorization digest does not match";
    case Verdict::Expired:
        return "Access token expired";
    }
    return "";
}

} // namespace cloudsim
