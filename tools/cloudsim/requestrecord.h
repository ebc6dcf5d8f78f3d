#pragma once

#include <QDateTime>
#include <QList>
#include <QPair>
#include <QString>
#include <QUrlQuery>

namespace cloudsim {

// One request as the simulated cloud received it.
struct RequestRecord
{
    QString method;
    QString path;  // decoded
    QString query; // as sent, without the "?"
    QList<QPair<QString, QString>> headers;
    QDateTime time;

    QString header(QString const& name) const
    {
        for (auto const& h : headers) {
            if (h.first.compare(name, Qt::CaseInsensitive) == 0)
                return h.second;
        }
        return QString();
    }

    QString queryValue(QString const& key) const
    {
        return QUrlQuery(query).queryItemValue(key, QUrl::FullyDecoded);
    }
};

} // namespace cloudsim
