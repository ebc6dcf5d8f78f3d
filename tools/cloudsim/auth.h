#pragma once

#include <QByteArray>
#include <QString>

namespace cloudsim {

// The device's signature of an authentication request: MD5 of the UTF-8
// bytes of device id, locale, salt and secret, with nothing between them,
// as 32 lower-case hex digits.
QByteArray authenticationSignature(QString const& deviceId, QString const& locale, QString const& salt,
                                   QString const& secret);

// The "Authorization" value that proves the token and the secret at a given
// cloud time: "Basic " + Base64("<token>:" + md5hex(token + secret + time)).
QString authorizationValue(QString const& token, QString const& secret, quint32 time);

} // namespace cloudsim
