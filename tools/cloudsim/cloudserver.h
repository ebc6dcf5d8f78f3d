#pragma once

#include "fault.h"
#include "playbackevent.h"
#include "requestrecord.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace cloudsim {

struct CloudOptions
{
    // Empty: the catalogue built into this library.
    QString dataDirectory;
    QString secret = "cloudsim-secret";
    int tokenLifetimeSeconds = 3600;
    // How far the device's idea of the cloud's time may be off.
    int clockSkewSeconds = 5;
    QString host = "127.0.0.1";
    // Both given: the cloud serves HTTPS with this certificate (a PEM file,
    // the leaf first, then any intermediates) and its private key.
    QString tlsCertificate;
    QString tlsKey;
    // The request log keeps this many of the latest requests, and no more
    // than requestLogBytes of memory: a cloud that runs for days must not
    // grow without end, however long the requests' headers. The event log
    // keeps as many events, within eventLogBytes.
    int requestLogLimit = 10000;
    qint64 requestLogBytes = 4 * 1024 * 1024;
    qint64 eventLogBytes = 1024 * 1024;
    // A free account may skip this many tracks of a program within the
    // window; a premium account has no limit.
    int skipsPerWindow = 6;
    int skipWindowSeconds = 3600;
};

// The cloud on loopback, over HTTP or HTTPS: "/authentication" hands out
// tokens for a correct signature, every other request must carry a valid
// "Authorization" header (images, media and web pages excepted), and the
// catalogue answers the rest, but for what depends on who asks: logins,
// searches, programs. It keeps a log of the latest requests and of the
// playback events they report, and misbehaves per route on demand. Requests
// are served on the HTTP library's own threads; all members may be called
// from any thread.
class CloudServer
{
public:
    explicit CloudServer(CloudOptions const& options = CloudOptions());
    ~CloudServer();

    CloudServer(CloudServer const&) = delete;
    CloudServer& operator=(CloudServer const&) = delete;

    // Port 0 takes a free one. False, with errorString(), when the catalogue
    // can't be read or the port can't be had.
    bool start(int port = 0);
    void stop();
    bool isRunning() const;
    QString errorString() const;

    int port() const;
    QString baseUrl() const;
    QString secret() const;
    QStringList routes() const;

    // The latest requests, oldest first, within CloudOptions::requestLogLimit
    // and requestLogBytes.
    QList<RequestRecord> requestLog() const;
    // The logged requests with this path, in order of arrival.
    QList<RequestRecord> requestsTo(QString const& path) const;
    // Connections that have ended since the start or clearLog(), and those
    // of them that ended before a request was read from them: a client that
    // refuses the cloud's certificate leaves after the handshake.
    struct ConnectionCount
    {
        int ended = 0;
        int withoutRequest = 0;
    };
    ConnectionCount connectionCount() const;
    // The latest event calls, oldest first, within
    // CloudOptions::requestLogLimit and eventLogBytes.
    QList<PlaybackEvent> eventLog() const;
    // Empties the request log and the event log, and counts connections
    // anew.
    void clearLog();
    // Tells the listener of each playback event the cloud hears from now
    // on, on the server thread that heard it; null stops that. Once this
    // returns, the listener given before is not running. The listener may
    // read the logs, but must not set a listener.
    void setEventListener(std::function<void(PlaybackEvent const&)> listener);

    // Logs the device in to a service that takes a password, as a submit of
    // the service's login form with these credentials would. A device is
    // named as it authenticated: its "device" parameter.
    void logIn(QString const& device, QString const& service, QString const& email);
    // The e-mail of the user the device is logged in as, or empty.
    QString loggedInUser(QString const& device, QString const& service) const;

    void setFault(QString const& route, Fault const& fault);
    void clearFaults();

    void setTokenLifetime(int seconds);
    // Every token handed out so far is refused from now on.
    void expireTokens();

private:
    class Impl;
    // Keeps the HTTP library out of this header.
    std::unique_ptr<Impl> mImpl;
};

} // namespace cloudsim
