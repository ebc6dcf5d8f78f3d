#include "httpclient.h"
#include "cmhandover.h"
#include "cmworker.h"

#include "httpclientfailurelog.h"
#include "httptransfer.h"
#include "tarnconstants.h"
#include "tarnvalue.h"
#include "../tarnlog.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QThread>
#include <QTimer>

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

#include <memory>

namespace {

void failUnsent(TarnUrl const& url, HttpClientError error, QString const& reason, HttpClient::Callback const& deliver)
{
    LOG4CPLUS_WARN(httpLogger, "GET " << url.toEncoded().constData() << " failed: " << reason.toStdString());
    HttpClientResult const result(url, 0, QByteArray(), error, reason);
    HttpClientFailureLog::record(result);
    deliver(result);
}

} // namespace

HttpClient::HttpClient(QObject* parent, HttpVersion version, bool verifyPeer)
    : QObject(parent), mManager(new QNetworkAccessManager(this)), mVersion(version), mVerifyPeer(verifyPeer)
{
}

// Transfers go first, while the manager still owns their replies.
HttpClient::~HttpClient()
{
    qDeleteAll(findChildren<HttpTransfer*>(QString(), Qt::FindDirectChildrenOnly));
}

void HttpClient::get(TarnUrl const& url, HttpClientOptions const& options, Callback callback)
{
    // The result travels back through an object that lives on the caller's
    // thread; the guard drops it if this client was destroyed meanwhile. The
    // receiver goes when the last copy of the delivery does, delivered or not.
    std::shared_ptr<QObject> receiver(new QObject, [](QObject* o) { o->deleteLater(); });
    QPointer<HttpClient> guard(this);
    Callback deliver = [receiver, guard, callback](HttpClientResult const& result) {
        cmHandOver(receiver.get(), [receiver, guard, callback, result] {
            if (guard)
                callback(result);
        });
    };

    if (QThread::currentThread() == thread()) {
        start(url, options, deliver);
        return;
    }
    cmHandOver(this, [this, url, options, deliver] { start(url, options, deliver); });
}

void HttpClient::start(TarnUrl const& url, HttpClientOptions const& options, Callback deliver)
{
    if (!url.isValid()) {
        failUnsent(url, HttpClientError::InvalidUrl, QStringLiteral("invalid URL"), deliver);
        return;
    }

    QNetworkRequest request(url.qurl());
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, mVersion == Http2);
    for (auto const& header : options.headers().items())
        request.setRawHeader(header.first.toUtf8(), header.second.toUtf8());
    // Only an HTTPS request touches the TLS configuration: asking for it
    // loads the TLS library, megabytes that a plain-HTTP cloud never needs.
    if (url.scheme() == QLatin1String("https")) {
        QSslConfiguration tls = request.sslConfiguration();
        if (!mVerifyPeer) {
            tls.setPeerVerifyMode(QSslSocket::VerifyNone);
        } else if (!caBundle().file().isEmpty()) {
            // A bundle that can't be used trusts nobody: falling back to the
            // system's store would widen what the platform chose to trust.
            if (!caBundle().isValid()) {
                failUnsent(url, HttpClientError::TlsFailure,
                           QStringLiteral("cannot verify %1: %2").arg(serverOf(url), caBundle().errorString()),
                           deliver);
                return;
            }
            tls.setCaCertificates(caBundle().certificates());
        }
        request.setSslConfiguration(tls);
    }

    LOG4CPLUS_DEBUG(httpLogger, "GET " << url.toEncoded().constData());
    new HttpTransfer(this, mManager->get(request), url, options, deliver);
}

HttpCaBundle const& HttpClient::caBundle()
{
    QString const file = TarnValue::fromVariant(CMRoot()->getValue(TarnSystemCaCertificatesPath())).string_();
    if (file != mCaBundle.file() || (!file.isEmpty() && !mCaBundle.isValid()))
        mCaBundle = file.isEmpty() ? HttpCaBundle() : HttpCaBundle::read(file);
    return mCaBundle;
}
