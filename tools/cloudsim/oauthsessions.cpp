#include "oauthsessions.h"

#include <QByteArray>
#include <QRandomGenerator>

namespace cloudsim {

QString OAuthSessions::sessionOf(QString const& device, QString const& service)
{
    std::lock_guard<std::mutex> lock(mMutex);
    QString& code = mCodes[qMakePair(device, service)];
    if (code.isEmpty()) {
        // Unguessable, so that nobody logs in a device by naming it.
        quint32 words[4];
        QRandomGenerator::system()->fillRange(words);
        code = QString::fromLatin1(QByteArray(reinterpret_cast<char const*>(words), sizeof words).toHex());
        mOwners.insert(code, Owner{device, service});
    }
    return code;
}

OAuthSessions::Owner OAuthSessions::ownerOf(QString const& session) const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mOwners.value(session);
}

} // namespace cloudsim
