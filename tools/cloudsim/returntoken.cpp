#include "returntoken.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>

namespace cloudsim {

namespace {

ReturnAddress failure(QString const& why)
{
    return ReturnAddress{QString(), why};
}

} // namespace

ReturnAddress readReturnToken(QString const& token, QString const& secret)
{
    if (token.isEmpty())
        return failure("the link carries no return token");
    QByteArray::FromBase64Result const decoded = QByteArray::fromBase64Encoding(
        token.toLatin1(), QByteArray::Base64UrlEncoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return failure("the return token is not URL-safe base64");
    QJsonArray const pair = QJsonDocument::fromJson(decoded.decoded).array();
    if (pair.size() != 2 || !pair.at(0).isString() || !pair.at(1).isString())
        return failure("the return token holds no pair of texts");
    QString const url = pair.at(0).toString();
    if (url.isEmpty())
        return failure("the return token holds no return address");
    QByteArray const expected =
        QCryptographicHash::hash(secret.toUtf8() + ':' + url.toUtf8(), QCryptographicHash::Md5).toHex();
    if (pair.at(1).toString().toLatin1() != expected)
        return failure("the return token's signature doesn't fit its address: it wasn't made with this cloud's secret");
    return ReturnAddress{url, QString()};
}

} // namespace cloudsim
