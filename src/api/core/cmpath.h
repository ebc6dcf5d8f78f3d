#pragma once

#include <QDebug>
#include <QHash>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <ostream>

// A path in the content tree: the prefix names the worker that owns the path
// ("airable:"), the base is the rest. Named parameters ride beside the base
// and take part in equality.
class CMPath
{
public:
    CMPath() = default;
    CMPath(QString const& prefix, QString const& base) : mPrefix(prefix), mBase(base) {}

    // The encoded form is the whole text, followed, when there are parameters,
    // by a unit separator (U+001F) and the parameters as a URL query. A URL
    // never holds that control character, so the split is unambiguous.
    static CMPath fromEncoded(QString const& encoded);
    QString toEncoded() const;

    // The prefix is the text up to and including the first ':'. Texts without
    // one have an empty prefix.
    static CMPath fromPrefixWithBase(QString const& text);

    QString const& prefix() const { return mPrefix; }
    QString const& base() const { return mBase; }
    QString baseWithPrefix() const { return mPrefix + mBase; }
    QStringList splitBase() const;

    bool startsWith(CMPath const& p, QString* rest = nullptr) const;
    bool isEmpty() const { return mPrefix.isEmpty() && mBase.isEmpty() && mParams.isEmpty(); }

    CMPath operator+(QString const& text) const;
    void appendSubpath(QString const& subpath);

    void addParam(QString const& key, QString const& value) { mParams.insert(key, value); }
    QString param(QString const& key) const { return mParams.value(key); }
    QMap<QString, QString> const& params() const { return mParams; }
    // The same path with no parameters.
    CMPath withoutParams() const
    {
        CMPath p(*this);
        p.mParams.clear();
        return p;
    }

    bool operator==(CMPath const& o) const
    {
        return mBase == o.mBase && mPrefix == o.mPrefix && mParams == o.mParams;
    }
    bool operator!=(CMPath const& o) const { return !(*this == o); }

private:
    QString mPrefix;
    QString mBase;
    QMap<QString, QString> mParams;
};

uint qHash(CMPath const& path, uint seed = 0);
std::ostream& operator<<(std::ostream& os, CMPath const& path);
QDebug operator<<(QDebug dbg, CMPath const& path);

Q_DECLARE_METATYPE(CMPath)
