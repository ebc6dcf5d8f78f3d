#include "httpclient.h"
#include "cmhandover.h"

#include "httptransfer.h"

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

static log4cplus::Logger logger = log4cplus::Logger::getInstance("HttpClient");

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
        LOG4CPLUS_WARN(logger, "GET " << url.toEncoded().constData() << " failed: invalid URL");
        deliver(HttpClientResult(url, 0, QByteArray(), HttpClientError::InvalidUrl, "invalid URL"));
        return;
    }

    QNetworkRequest request(url.qurl());
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, mVersion == Http2);
    for (auto const& header : options.headers().items())
        request.setRawHeader(header.first.toUtf8(), header.second.toUtf8());
    if (!mVerifyPeer) {
        QSslConfiguration tls = request.sslConfiguration();
        tls.setPeerVerifyMode(QSslSocket::VerifyNone);
        request.setSslConfiguration(tls);
    }

    LOG4CPLUS_DEBUG(logger, "GET " << url.toEncoded().constData());
    new HttpTransfer(this, mManager->get(request), url, options, deliver);
}
