#include "tarnhash.h"
#include "trstring.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

void TarnHash::__mergeWith(TarnHash const& other)
{
    for (auto it = other.mHash.cbegin(); it != other.mHash.cend(); ++it)
        mHash.insert(it.key(), it.value());
}

QString TarnHash::toJsonString() const
{
    return TarnJson::serialize(__variant());
}

namespace {

QJsonValue toJson(QVariant const& v)
{
    if (v.canConvert<TrString>() && v.userType() == qMetaTypeId<TrString>())
        return v.value<TrString>().toString();
    if (v.userType() == qMetaTypeId<TarnHash>())
        return toJson(v.value<TarnHash>().__variant());
    switch (v.type()) {
    case QVariant::Hash: {
        QJsonObject o;
        auto const h = v.toHash();
        for (auto it = h.cbegin(); it != h.cend(); ++it)
            o.insert(it.key(), toJson(it.value()));
        return o;
    }
    case QVariant::Map: {
        QJsonObject o;
        auto const m = v.toMap();
        for (auto it = m.cbegin(); it != m.cend(); ++it)
            o.insert(it.key(), toJson(it.value()));
        return o;
    }
    case QVariant::List:
    case QVariant::StringList: {
        QJsonArray a;
        for (auto const& e : v.toList())
            a.append(toJson(e));
        return a;
    }
    case QVariant::Invalid:
        return QJsonValue(QJsonValue::Null);
    case QVariant::Bool:
        return v.toBool();
    case QVariant::Int:
    case QVariant::LongLong:
    case QVariant::UInt:
    case QVariant::ULongLong:
        return v.toLongLong();
    case QVariant::Double:
        return v.toDouble();
    default:
        return QJsonValue::fromVariant(v).isNull() ? QJsonValue(v.toString()) : QJsonValue::fromVariant(v);
    }
}

} // namespace

QString TarnJson::serialize(QVariant const& value)
{
    QJsonValue const j = toJson(value);
    if (j.isObject())
        return QString::fromUtf8(QJsonDocument(j.toObject()).toJson(QJsonDocument::Compact));
    if (j.isArray())
        return QString::fromUtf8(QJsonDocument(j.toArray()).toJson(QJsonDocument::Compact));
    // A bare scalar: wrap it in an array and strip the brackets.
    QByteArray const text = QJsonDocument(QJsonArray{j}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(text.mid(1, text.size() - 2));
}
