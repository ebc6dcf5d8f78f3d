#pragma once

#include <QHash>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariant>

// The platform's record base: a hash of names to values. Records derived
// from it add typed accessors; setters return the record for chaining.
class TarnHash
{
public:
    TarnHash() = default;
    TarnHash(QHash<QString, QVariant> const& h) : mHash(h) {}

    bool __contains(QString const& key) const { return mHash.contains(key); }
    QHash<QString, QVariant> const& __hash() const { return mHash; }
    QVariant __variant() const { return QVariant(mHash); }
    void __mergeWith(TarnHash const& other);
    bool isEmpty() const { return mHash.isEmpty(); }
    QString toJsonString() const;

    QVariant value(QString const& key) const { return mHash.value(key); }
    void insert(QString const& key, QVariant const& value) { mHash.insert(key, value); }
    void remove(QString const& key) { mHash.remove(key); }

    bool operator==(TarnHash const& o) const { return mHash == o.mHash; }
    bool operator!=(TarnHash const& o) const { return mHash != o.mHash; }

    // Reads a nested record stored as a plain hash variant.
    static QHash<QString, QVariant> toHash(QVariant const& v) { return v.toHash(); }

protected:
    QHash<QString, QVariant> mHash;
};

template <typename T>
using TarnList = QList<T>;

namespace TarnJson {
// Compact JSON text of a variant; platform records serialise as objects.
QString serialize(QVariant const& value);
}

Q_DECLARE_METATYPE(TarnHash)
