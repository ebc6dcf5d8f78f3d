#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QPair>
#include <QString>
#include <QUrl>

// A URL with the platform's encoding rule: text handed to it is taken as
// already encoded, so a "%20" stays an escape and is never encoded twice.
class TarnUrl
{
public:
    TarnUrl() = default;
    TarnUrl(QString const& encoded);
    TarnUrl(char const* encoded) : TarnUrl(QString::fromUtf8(encoded)) {}
    TarnUrl(QUrl const& url) : mUrl(url) {}

    static TarnUrl fromEncoded(QByteArray const& encoded);
    static TarnUrl fromEncoded(QString const& encoded);
    TarnUrl& operator=(QString const& encoded);

    QByteArray toEncoded() const;
    QString toString() const;
    QUrl const& qurl() const { return mUrl; }

    bool isValid() const;
    bool isEmpty() const { return mUrl.isEmpty(); }
    bool operator==(TarnUrl const& o) const { return mUrl == o.mUrl; }
    bool operator!=(TarnUrl const& o) const { return !(*this == o); }

    QString scheme() const { return mUrl.scheme(); }
    void setScheme(QString const& s) { mUrl.setScheme(s); }
    QString authority() const { return mUrl.authority(QUrl::FullyEncoded); }
    void setAuthority(QString const& a) { mUrl.setAuthority(a, QUrl::TolerantMode); }
    QString path() const { return mUrl.path(QUrl::FullyEncoded); }
    void setPath(QString const& p) { mUrl.setPath(p, QUrl::TolerantMode); }
    QString host() const { return mUrl.host(); }
    int port(int defaultPort = -1) const { return mUrl.port(defaultPort); }

    QList<QPair<QString, QString>> queryItems() const;
    void setQueryItems(QList<QPair<QString, QString>> const& items);
    QString queryItemValue(QString const& key) const;
    void addQueryItem(QString const& key, QString const& value);
    void removeQueryItem(QString const& key);

private:
    QUrl mUrl;
};

Q_DECLARE_METATYPE(TarnUrl)
