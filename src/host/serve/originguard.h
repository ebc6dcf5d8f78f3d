#pragma once

#include <QString>
#include <QStringList>

// Who may talk to the host's web interface. Any page open in the same
// browser can send requests to a server on loopback, and a name that a
// foreign DNS server points at 127.0.0.1 reaches it too; so a request must
// name this server in its Host header, and a browser's Origin, when it
// sends one, must be this server as well.
class OriginGuard
{
public:
    // The addresses the server answers as, "127.0.0.1:8090" and the like.
    // Empty: any Host, for a server that listens on every address and
    // can't know the names it is reached by; Origin must then still be
    // the Host's own.
    explicit OriginGuard(QStringList authorities = QStringList());

    // The authorities a server bound to address:port answers as.
    static QStringList authoritiesFor(QString const& address, int port);

    // Why the request is refused, or empty when it may pass. origin is
    // empty when the request had none.
    QString refusal(QString const& host, QString const& origin) const;

private:
    QStringList mAuthorities;
};
