#include "tarnurl.h"

#include <QUrlQuery>

TarnUrl::TarnUrl(QString const& encoded) : mUrl(encoded, QUrl::TolerantMode) {}

TarnUrl TarnUrl::fromEncoded(QByteArray const& encoded)
{
    return TarnUrl(QUrl::fromEncoded(encoded, QUrl::TolerantMode));
}

TarnUrl TarnUrl::fromEncoded(QString const& encoded)
{
    return fromEncoded(encoded.toUtf8());
}

TarnUrl& TarnUrl::operator=(QString const& encoded)
{
    mUrl = QUrl(encoded, QUrl::TolerantMode);
    return *this;
}

QByteArray TarnUrl::toEncoded() const
{
    return mUrl.toEncoded(QUrl::FullyEncoded);
}

QString TarnUrl::toString() const
{
    return mUrl.toString(QUrl::FullyEncoded);
}

bool TarnUrl::isValid() const
{
    return mUrl.isValid() && !mUrl.isEmpty();
}

// Query items are kept and handed out in their encoded form, as the rest of
// the URL is, so a value read back can be put into another URL unchanged.
QList<QPair<QString, QString>> TarnUrl::queryItems() const
{
    return QUrlQuery(mUrl).queryItems(QUrl::FullyEncoded);
}

void TarnUrl::setQueryItems(QList<QPair<QString, QString>> const& items)
{
    QUrlQuery q;
    q.setQueryItems(items);
    mUrl.setQuery(q);
}

QString TarnUrl::queryItemValue(QString const& key) const
{
    return QUrlQuery(mUrl).queryItemValue(key, QUrl::FullyDecoded);
}

void TarnUrl::addQueryItem(QString const& key, QString const& value)
{
    QUrlQuery q(mUrl);
    q.addQueryItem(QString::fromUtf8(QUrl::toPercentEncoding(key)),
                   QString::fromUtf8(QUrl::toPercentEncoding(value)));
    mUrl.setQuery(q);
}

void TarnUrl::removeQueryItem(QString const& key)
{
    QUrlQuery q(mUrl);
    q.removeAllQueryItems(key);
    mUrl.setQuery(q);
}
