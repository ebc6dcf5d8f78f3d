#pragma once

#include "httpcabundle.h"
#include "httpclientoptions.h"
#include "httpclientresult.h"
#include "tarnurl.h"

#include <QObject>

#include <functional>

class QNetworkAccessManager;

// GET over HTTP and HTTPS with a promise: the callback runs exactly once, on
// the thread that called get(), whatever became of the transfer (answer,
// error status, time-out, refused connection, unknown host, TLS failure, body
// over the read limit). The calling thread must run a Qt event loop. Only a
// client destroyed with transfers in flight drops them without calling back,
// so that no callback outlives the object that made the request.
//
// HTTP redirects are handed back as they come and never followed.
//
// With verifyPeer, an HTTPS server must show a certificate for the URL's
// host that a trusted CA signed and that is in its time; otherwise the
// transfer fails with TlsFailure before a byte of the request is sent.
// Trusted are the system's CAs, or, when the platform value
// TarnSystemCaCertificatesPath() names a file, the CAs in that file alone.
class HttpClient : public QObject
{
    Q_OBJECT

public:
    enum HttpVersion
    {
        Http1_1 = 0,
        Http2 = 1,
    };

    using Callback = std::function<void(HttpClientResult const&)>;

    // verifyPeer: check the certificates of HTTPS servers (above).
    HttpClient(QObject* parent, HttpVersion version, bool verifyPeer);
    ~HttpClient() override;

    void get(TarnUrl const& url, HttpClientOptions const& options, Callback callback);

private:
    void start(TarnUrl const& url, HttpClientOptions const& options, Callback deliver);
    // The bundle the platform names now, read again when the name changes;
    // an empty file name stands for the system's store.
    HttpCaBundle const& caBundle();

    QNetworkAccessManager* mManager;
    HttpVersion mVersion;
    bool mVerifyPeer;
    HttpCaBundle mCaBundle;
};
