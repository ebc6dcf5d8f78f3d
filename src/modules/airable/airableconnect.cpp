#include "airableconnect.h"

#include "AirableObjectFactory.h"
#include "ErrorItem.h"
#include "JsonParser.h"
#include "cmworker.h"
#include "tarnconstants.h"
#include "airablelog.h"

#include <QCryptographicHash>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace {

constexpr int kTimeoutMs = 30000;

bool isResetPath(TarnUrl const& url)
{
    return url.path() == QLatin1String("/reset");
}

} // namespace

AirableConnect::AirableConnect(portable::SmartPointer<airable::AirableConfig> config)
    : mHttpClient(this, HttpClient::HttpVersion(0), true)
    , mConfig(std::move(config))
{
    qRegisterMetaType<AirableConnect::Reply>("AirableConnect::Reply");
    qRegisterMetaType<CMReply<AirableConnect::Reply>>("CMReply<AirableConnect::Reply>");
    mResetRequired =
        TarnValue::fromVariant(CMRoot()->getValue(CMPath::fromPrefixWithBase(TarnAirableResetRequired()))).bool_();
}

CMReply<AirableConnect::Reply> AirableConnect::send(TarnUrl const& url, int readSizeLimit)
{
    CMReply<Reply> reply;
    sendInternal(Request{url, readSizeLimit, reply});
    return reply;
}

airable::AirableObject::Ptr AirableConnect::parseJson(QByteArray const& data)
{
    portable::utils::JsonParser parser;
    parser.parse(data);
    return airable::AirableObjectFactory::instance()->parseDocument(parser);
}

void AirableConnect::sendInternal(Request const& request)
{
    LOG4CPLUS_DEBUG(logger, "url=" << request.url.toString().toStdString());

    HttpClientOptions options;
    options.setTimeoutMs(kTimeoutMs);
    options.setHeaders(prepareHeader());
    if (request.readSizeLimit >= 0)
        options.setReadSizeLimit(request.readSizeLimit);

    if (mResetRequired && !isResetPath(request.url)) {
        if (mResetting) {
            mQueue.append(request);
            return;
        }
        LOG4CPLUS_INFO(logger, "Need to perform factory-reset on the airable cloud...");
        TarnUrl resetUrl = TarnUrl::fromEncoded(mConfig->baseUrl());
        resetUrl.setPath(QStringLiteral("/reset"));
        mResetting = true;
        authenticate(Request{resetUrl, -1, CMReply<Reply>()});
        mQueue.append(request);
        return;
    }

    mHttpClient.get(request.url, options,
                    [this, request](HttpClientResult const& result) { handleSendResult(request, result); });
}

void AirableConnect::handleSendResult(Request const& request, HttpClientResult const& result)
{
    airable::AirableObject::Ptr object;
    if (result.statusCode() != 200) {
        if (isResetPath(request.url)) {
            mResetting = false;
            cancelQueuedRequests(CMError(CMError::DefaultName(),
                TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QStringLiteral("Failed reset!")))));
        }
    } else {
        object = parseJson(result.body());
        auto const error = object.dynamicCast<airable::ErrorItem>();
        if (error && (error->name() == QLatin1String("authentication") || error->name() == QLatin1String("authorization"))) {
            authenticate(request);
            return;
        }
        if (isResetPath(request.url)) {
            mResetRequired = false;
            mResetting = false;
            CMRoot()->setValue(CMPath::fromPrefixWithBase(TarnAirableResetRequired()), TarnValue().setBool_(false),
                               CMReply<QVariant>());
            processQueuedRequests();
        }
    }
    request.reply.setValue(Reply{result.url(), result.statusCode(), object, result.body()});
}

void AirableConnect::processQueuedRequests()
{
    QList<Request> const queued = std::exchange(mQueue, {});
    for (auto const& request : queued) {
        if (mResetting && !isResetPath(request.url))
            mQueue.append(request);
        else
            sendInternal(request);
    }
}

void AirableConnect::cancelQueuedRequests(CMError const& error)
{
    QList<Request> const queued = std::exchange(mQueue, {});
    mResetting = false;
    for (auto const& request : queued)
        request.reply.setError(error);
}

void AirableConnect::authenticate(Request const& request)
{
    mQueue.append(request);
    if (mAuthenticating)
        return;
    mAuthenticating = true;

    QString const salt = mConfig->generateSalt();
    QByteArray const signature =
        QCryptographicHash::hash((mConfig->deviceId() + mConfig->locale() + salt + mConfig->secret()).toUtf8(),
                                 QCryptographicHash::Md5)
            .toHex();

    TarnUrl url = TarnUrl::fromEncoded(mConfig->baseUrl());
    url.setPath(QStringLiteral("/authentication"));
    url.addQueryItem(QStringLiteral("device"), mConfig->deviceId());
    url.addQueryItem(QStringLiteral("name"), mConfig->deviceName());
    url.addQueryItem(QStringLiteral("version"), mConfig->version());
    url.addQueryItem(QStringLiteral("locale"), mConfig->locale());
    url.addQueryItem(QStringLiteral("salt"), salt);
    url.addQueryItem(QStringLiteral("signature"), QString::fromLatin1(signature));

    HttpClientOptions options;
    options.setTimeoutMs(kTimeoutMs);
    mHttpClient.get(url, options, [this](HttpClientResult const& result) { handleAuthenticateResult(result); });
}

void AirableConnect::handleAuthenticateResult(HttpClientResult const& result)
{
    auto const object = parseJson(result.body());
    mAuthenticating = false;
    CMError const failed(CMError::DefaultName(),
        TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QStringLiteral("Failed to authenticate!"))));

    if (!object) {
        LOG4CPLUS_ERROR(logger, "Invalid json object received");
        cancelQueuedRequests(failed);
        return;
    }
    mAccessToken = object.dynamicCast<airable::AccessTokenContainer>();
    if (mAccessToken) {
        LOG4CPLUS_INFO(logger, "Received access token '" << mAccessToken->accessToken().toStdString()
                                   << "' and access time " << mAccessToken->accessTime());
        processQueuedRequests();
        return;
    }
    LOG4CPLUS_ERROR(logger, "Failed to parse returned object in Authentication");
    cancelQueuedRequests(failed);
}

HttpClientHeaders AirableConnect::prepareHeader()
{
    HttpClientHeaders headers;
    if (!mAccessToken || mAccessToken->accessToken().isEmpty())
        return headers;

    QByteArray plain =
        (mAccessToken->accessToken() + mConfig->secret() + QString::number(mAccessToken->accessTime())).toUtf8();
    // The digest covers the text only up to its first zero byte.
    int const zero = plain.indexOf('\0');
    if (zero >= 0)
        plain.truncate(zero);
    QByteArray const digest = QCryptographicHash::hash(plain, QCryptographicHash::Md5).toHex();
    QByteArray const credentials = mAccessToken->accessToken().toUtf8() + ':' + digest;
    headers.insert(QStringLiteral("Authorization"), QStringLiteral("Basic ") + QString::fromLatin1(credentials.toBase64()));
    return headers;
}

void AirableConnect::resetToken()
{
    mAccessToken = nullptr;
}
