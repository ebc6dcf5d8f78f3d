#include "originguard.h"

OriginGuard::OriginGuard(QStringList authorities) : mAuthorities(std::move(authorities)) {}

QStringList OriginGuard::authoritiesFor(QString const& address, int port)
{
    QString const p = QString::number(port);
    if (address == QLatin1String("0.0.0.0") || address == QLatin1String("::"))
        return {};
    QStringList names{(address.contains(QLatin1Char(':')) ? QLatin1Char('[') + address + QLatin1Char(']') : address)
                      + QLatin1Char(':') + p};
    if (address == QLatin1String("127.0.0.1") || address == QLatin1String("localhost")) {
        names << QStringLiteral("127.0.0.1:") + p << QStringLiteral("localhost:") + p;
        names.removeDuplicates();
    }
    return names;
}

QString OriginGuard::refusal(QString const& host, QString const& origin) const
{
    QString const asked = host.toLower();
    if (asked.isEmpty())
        return QStringLiteral("A request must name this server in its Host header.");
    if (!mAuthorities.isEmpty() && !mAuthorities.contains(asked))
        return QStringLiteral("This server answers as %1, not as %2.").arg(mAuthorities.first(), host);
    if (!origin.isEmpty() && origin.toLower() != QStringLiteral("http://") + asked)
        return QStringLiteral("Requests from %1 are refused: only this server's own page may use it.").arg(origin);
    return QString();
}
