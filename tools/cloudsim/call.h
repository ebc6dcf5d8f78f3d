#pragma once

#include <QHash>
#include <QString>

namespace cloudsim {

// One request to the cloud as the parts that answer it see it.
struct Call
{
    QString path;
    // Query values, decoded; of a key given twice, the first.
    QHash<QString, QString> params;
    // The device that holds the request's token; empty on public paths.
    QString device;

    QString param(QString const& key) const { return params.value(key); }
    // The page of a paged listing, from 1.
    int page() const { return qMax(1, param(QStringLiteral("p")).toInt()); }
};

} // namespace cloudsim
