#include "auth.h"

#include <QCryptographicHash>

namespace cloudsim {

namespace {

QByteArray md5Hex(QByteArray const& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

} // namespace

QByteArray authenticationSignature(QString const& deviceId, QString const& locale, QString const& salt,
                                   QString const& secret)
{
    return md5Hex((deviceId + locale + salt + secret).toUtf8());
}

QString authorizationValue(QString const& token, QString const& secret, quint32 time)
{
    // Devices hash the text as a C string: a zero byte ends it.
    QByteArray plain = (token + secret + QString::number(time)).toUtf8();
    int const zero = plain.indexOf('\0');
    if (zero >= 0)
        plain.truncate(zero);
    QByteArray const credentials = token.toUtf8() + ':' + md5Hex(plain);
    return "Basic " + QString::fromLatin1(credentials.toBase64());
}

} // namespace cloudsim
