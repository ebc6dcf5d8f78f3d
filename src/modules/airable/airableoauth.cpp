#include "airableoauth.h"

#include "cmroot.h"
#include "tarnconstants.h"
#include "tarnoauth2.h"
#include "tarnurl.h"
#include "airablelog.h"

#include <QCryptographicHash>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

AirableOAuth* AirableOAuth::create(CMNodes* nodes, CMPath const& path)
{
    auto* node = new AirableOAuth(path);
    node->setNodes(nodes);
    return node;
}

void AirableOAuth::getDataRequest(CMGetDataRequest const& request)
{
    // Clients ask for the permission before they set values here.
    QList<QVariant> values;
    for (auto const& role : request.roles())
        values << (role == TarnRoles::Permission() ? QVariant(TarnPermission::Default_()) : QVariant());
    request.reply().setValue(values);
}

void AirableOAuth::setDataRequest(CMSetDataRequest const& request)
{
    if (request.role() == TarnRoles::Activate()) {
        handleMakeLoginData(request);
    } else if (request.role() == TarnRoles::Value()) {
        handleApplyLoginData(request);
    } else {
        request.reply().setError(CMError(QStringLiteral("Error"),
            TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QStringLiteral("Unsupported role")))));
    }
}

void AirableOAuth::setLoginMsg(QSharedPointer<AirableMessage> message, CMPath const& path)
{
    m_loginMessage = std::move(message);
    m_redirectPath = path;
}

void AirableOAuth::resetLoginMsg()
{
    m_loginMessage.reset();
}

QByteArray AirableOAuth::returnToken(QByteArray const& encodedUrl, QString const& secret)
{
    QByteArray const signature =
        QCryptographicHash::hash(secret.toUtf8() + ':' + encodedUrl, QCryptographicHash::Md5).toHex();
    QByteArray const pair = TarnJson::serialize(QVariantList{encodedUrl, signature}).toUtf8();
    return pair.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

void AirableOAuth::handleMakeLoginData(CMSetDataRequest const& request)
{
    LOG4CPLUS_TRACE(logger, "value: " << TarnJson::serialize(request.value()).toStdString() << " path: "
                                      << request.path());
    QString const oauthType = request.path().param(QStringLiteral("oauthType"));
    if (oauthType.isEmpty()) {
        request.reply().setError(CMError(CMError::DefaultName(), TrString(QStringLiteral("Empty oauthType"))));
        return;
    }
    TarnUrl const appUrl =
        TarnUrl::fromEncoded(TarnValue::fromVariant(CMRoot()->getValue(TarnOAuth2AppRedirectUriPath())).string_().toUtf8());
    TarnUrl browserUrl = TarnUrl::fromEncoded(TarnValue::fromVariant(request.value()).string_().toUtf8());
    // The client's web server learns which node to tell of the login's end.
    browserUrl.addQueryItem(QStringLiteral("servicePath"), TarnAirableOAuthPath().toEncoded());

    TarnUrl chosen;
    if (oauthType == QLatin1String("app")) {
        chosen = appUrl;
    } else if (oauthType == QLatin1String("browser")) {
        chosen = browserUrl;
    } else {
        request.reply().setError(CMError(CMError::DefaultName(), TrString(QStringLiteral("Unsupported oauth flow"))));
        return;
    }
    QString const secret = TarnValue::fromVariant(CMRoot()->getValue(TarnAirableConfigPath())).airableConfig().secret();
    QByteArray const token = returnToken(chosen.toEncoded(), secret);
    LOG4CPLUS_DEBUG(logger, "Currently used return url for the local webserver: " << chosen.toString().toStdString());

    QString url = request.path().param(QStringLiteral("url"));
    url.replace(QLatin1String(":return:"), QString::fromLatin1(token), Qt::CaseSensitive);
    request.reply().setValue(TarnOAuth2LoginData().setUrl(url).__variant());
}

void AirableOAuth::handleApplyLoginData(CMSetDataRequest const& request)
{
    if (m_loginMessage) {
        m_loginMessage->closeWithRedirect(m_redirectPath);
        m_loginMessage.reset();
    }
    request.reply().setValue(QVariant());
}
