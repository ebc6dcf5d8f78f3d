#pragma once

#include <QHash>
#include <QString>

namespace cloudsim {

// One request to the cloud as the parts that answer it see it.
struct Call
{
    // "GET", or "POST" for the forms of the services' web pages.
    QString method = QStringLiteral("GET");
    QString path;
    // Query values, decoded; of a key given twice, the first.
    QHash<QString, QString> params;
    // The fields of a posted form, decoded, as params are.
    QHash<QString, QString> form;
    // The device that holds the request's token; empty on public paths.
    QString device;
    // The locale the device authenticated with for that token, as it wrote
    // it ("de-DE"); empty on public paths.
    QString locale;

    QString param(QString const& key) const { return params.value(key); }
    // The page of a paged listing, from 1.
    int page() const { return qMax(1, param(QStringLiteral("p")).toInt()); }
};

} // namespace cloudsim
