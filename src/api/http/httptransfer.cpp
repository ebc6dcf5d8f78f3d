#include "httptransfer.h"
#include "httpclientfailurelog.h"
#include "../tarnlog.h"

#include <QNetworkReply>
#include <QSslError>
#include <QStringList>
#include <QTimer>

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace {

HttpClientError errorKind(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::ConnectionRefusedError:
        return HttpClientError::ConnectionRefused;
    case QNetworkReply::HostNotFoundError:
        return HttpClientError::HostNotFound;
    case QNetworkReply::RemoteHostClosedError:
        return HttpClientError::ConnectionClosed;
    case QNetworkReply::TimeoutError:
        return HttpClientError::Timeout;
    case QNetworkReply::SslHandshakeFailedError:
        return HttpClientError::TlsFailure;
    case QNetworkReply::ProtocolUnknownError:
        return HttpClientError::InvalidUrl;
    default:
        return HttpClientError::Network;
    }
}

} // namespace

QString serverOf(TarnUrl const& url)
{
    QString const host = url.host().contains(QLatin1Char(':')) ? QStringLiteral("[%1]").arg(url.host()) : url.host();
    return url.port() < 0 ? host : QStringLiteral("%1:%2").arg(host).arg(url.port());
}

HttpTransfer::HttpTransfer(QObject* parent, QNetworkReply* reply, TarnUrl const& url,
                           HttpClientOptions const& options, Completion completion)
    : QObject(parent)
    , mReply(reply)
    , mUrl(url)
    , mReadSizeLimit(options.readSizeLimit())
    , mCompletion(std::move(completion))
{
    connect(reply, &QNetworkReply::metaDataChanged, this, &HttpTransfer::checkAnnouncedLength);
    connect(reply, &QIODevice::readyRead, this, &HttpTransfer::readAvailable);
    connect(reply, &QNetworkReply::finished, this, &HttpTransfer::finish);
    // Left unanswered, the errors make the reply abort the connection
    // before it writes the request.
    connect(reply, &QNetworkReply::sslErrors, this, [this](QList<QSslError> const& errors) {
        QStringList texts;
        for (auto const& e : errors)
            texts << e.errorString();
        texts.removeDuplicates();
        mCertificateErrors = texts.join("; ");
    });
    if (options.timeoutMs() > 0) {
        mTimer = new QTimer(this);
        mTimer->setSingleShot(true);
        connect(mTimer, &QTimer::timeout, this, [this, ms = options.timeoutMs()] {
            fail(HttpClientError::Timeout, QString("no complete answer within %1 ms").arg(ms));
        });
        mTimer->start(options.timeoutMs());
    }
}

// Only reached without completion when the client goes away with the
// transfer in flight; the reply is stopped so that nothing arrives later.
HttpTransfer::~HttpTransfer()
{
    if (mReply) {
        mReply->disconnect(this);
        mReply->abort();
        delete mReply;
    }
}

bool HttpTransfer::overLimit(qint64 bytes) const
{
    return mReadSizeLimit >= 0 && bytes > mReadSizeLimit;
}

void HttpTransfer::checkAnnouncedLength()
{
    bool ok = false;
    qint64 announced = mReply->header(QNetworkRequest::ContentLengthHeader).toLongLong(&ok);
    if (ok && overLimit(announced))
        fail(HttpClientError::ReadLimitExceeded,
             QString("announced body of %1 bytes is over the read limit of %2 bytes").arg(announced).arg(mReadSizeLimit));
}

void HttpTransfer::readAvailable()
{
    if (mDone)
        return;
    mBody += mReply->readAll();
    if (overLimit(mBody.size()))
        fail(HttpClientError::ReadLimitExceeded,
             QString("body is over the read limit of %1 bytes").arg(mReadSizeLimit));
}

void HttpTransfer::finish()
{
    readAvailable();
    if (mDone)
        return;

    QVariant const statusAttribute = mReply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    int const status = statusAttribute.isValid() ? statusAttribute.toInt() : 0;
    QNetworkReply::NetworkError const error = mReply->error();

    if (error == QNetworkReply::NoError && status != 0) {
        complete(HttpClientResult(mUrl, status, mBody));
        return;
    }
    // A 2xx status with an error means that the connection broke after the
    // headers: the body is incomplete and must not pass for an answer.
    if (status >= 300) {
        QString const reason = QString("status %1 %2")
                                   .arg(status)
                                   .arg(mReply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString());
        LOG4CPLUS_WARN(httpLogger, "GET " << mUrl.toEncoded().constData() << " answered " << reason.toStdString());
        complete(HttpClientResult(mUrl, status, mBody, HttpClientError::HttpStatus, reason));
        return;
    }
    HttpClientError const kind = errorKind(error);
    QString reason = mReply->errorString();
    if (kind == HttpClientError::TlsFailure)
        reason = mCertificateErrors.isEmpty()
                     ? QStringLiteral("TLS handshake with %1 failed: %2").arg(serverOf(mUrl), reason)
                     : QStringLiteral("the certificate of %1 is refused: %2").arg(serverOf(mUrl), mCertificateErrors);
    if (error == QNetworkReply::NoError)
        reason = "answer without HTTP status";
    fail(kind, reason);
}

void HttpTransfer::fail(HttpClientError error, QString const& reason)
{
    if (mDone)
        return;
    LOG4CPLUS_WARN(httpLogger, "GET " << mUrl.toEncoded().constData() << " failed: " << reason.toStdString());
    HttpClientResult const result(mUrl, 0, QByteArray(), error, reason);
    HttpClientFailureLog::record(result);
    complete(result);
}

void HttpTransfer::complete(HttpClientResult const& result)
{
    mDone = true;
    if (mTimer)
        mTimer->stop();
    if (mReply) {
        mReply->disconnect(this);
        if (mReply->isRunning())
            mReply->abort();
        mReply->deleteLater();
        mReply = nullptr;
    }
    mCompletion(result);
    deleteLater();
}
