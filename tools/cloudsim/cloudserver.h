#pragma once

#include "fault.h"
#include "requestrecord.h"

#include <QList>
#include <QString>
#include <QStringList>

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
    // The request log keeps this many of the latest requests; a cloud that
    // runs for days must not grow without end.
    int requestLogLimit = 10000;
};

// The cloud on loopback: "/authentication" hands out tokens for a correct
// signature, every other request must carry a valid "Authorization" header
// (images and media excepted), and the catalogue answers the rest. It keeps
// a log of the latest requests and misbehaves per route on demand. Requests are
// served on the HTTP library's own threads; all members may be called from
// any thread.
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

    // The latest requests, oldest first, at most CloudOptions::requestLogLimit.
    QList<RequestRecord> requestLog() const;
    // The logged requests with this path, in order of arrival.
    QList<RequestRecord> requestsTo(QString const& path) const;
    void clearLog();

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
