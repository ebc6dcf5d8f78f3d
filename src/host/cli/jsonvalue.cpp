#include "jsonvalue.h"

#include "tarnhash.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>

namespace {

QVariant toPlatformVariant(QJsonValue const& v)
{
    switch (v.type()) {
    case QJsonValue::Object: {
        QVariantHash hash;
        QJsonObject const o = v.toObject();
        for (auto it = o.begin(); it != o.end(); ++it)
            hash.insert(it.key(), toPlatformVariant(it.value()));
        return hash;
    }
    case QJsonValue::Array: {
        QVariantList list;
        for (auto const& e : v.toArray())
            list << toPlatformVariant(e);
        return list;
    }
    case QJsonValue::Double: {
        double const d = v.toDouble();
        if (std::floor(d) == d && std::fabs(d) < 2147483648.0)
            return int(d);
        return d;
    }
    default:
        return v.toVariant();
    }
}

} // namespace

QJsonValue jsonFromVariant(QVariant const& value)
{
    QString const text = QLatin1Char('[') + TarnJson::serialize(value) + QLatin1Char(']');
    return QJsonDocument::fromJson(text.toUtf8()).array().at(0);
}

bool variantFromJsonText(QString const& text, QVariant* value)
{
    QJsonParseError error{};
    // Wrapped, so that a bare scalar such as true or "text" is accepted.
    QJsonDocument const doc = QJsonDocument::fromJson(("[" + text + "]").toUtf8(), &error);
    if (error.error != QJsonParseError::NoError || doc.array().size() != 1)
        return false;
    *value = toPlatformVariant(doc.array().at(0));
    return true;
}

QString displayText(QJsonValue const& value)
{
    switch (value.type()) {
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        return QString();
    case QJsonValue::Object:
        return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    case QJsonValue::Array:
        return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    default:
        return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact)).mid(1).chopped(1);
    }
}
