#include "valuerecord.h"

#include "tarnvalue.h"

namespace {

enum class Kind
{
    Text,
    Truth,
    WholeNumber,
    Number,
    Record,
    List,
    Other,
};

Kind kindOf(QVariant const& v)
{
    switch (int(v.type())) {
    case QMetaType::QString:
        return Kind::Text;
    case QMetaType::Bool:
        return Kind::Truth;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return Kind::WholeNumber;
    case QMetaType::Double:
        return Kind::Number;
    case QMetaType::QVariantHash:
    case QMetaType::QVariantMap:
        return Kind::Record;
    case QMetaType::QVariantList:
        return Kind::List;
    default:
        return Kind::Other;
    }
}

QString kindName(Kind kind)
{
    switch (kind) {
    case Kind::Text:
        return QStringLiteral("a string");
    case Kind::Truth:
        return QStringLiteral("true or false");
    case Kind::WholeNumber:
        return QStringLiteral("a whole number");
    case Kind::Number:
        return QStringLiteral("a number");
    case Kind::Record:
        return QStringLiteral("a record");
    case Kind::List:
        return QStringLiteral("a list");
    case Kind::Other:
        break;
    }
    return QStringLiteral("a value");
}

bool fits(Kind wanted, QVariant const& typed)
{
    Kind const kind = kindOf(typed);
    return kind == wanted || (wanted == Kind::Number && kind == Kind::WholeNumber);
}

QVariant untyped(QVariant const& typed)
{
    switch (typed.type()) {
    case QVariant::String:
        return TarnValue().setString_(typed.toString()).__variant();
    case QVariant::Bool:
        return TarnValue().setBool_(typed.toBool()).__variant();
    case QVariant::Int:
        return TarnValue().setInt_(typed.toInt()).__variant();
    default:
        return typed;
    }
}

} // namespace

bool toValueRecord(QVariant const& typed, QVariant const& stored, QVariant* record, QString* expected)
{
    QVariantHash const storedRecord = stored.toHash();
    if (!stored.isValid() || storedRecord.size() != 1) {
        *record = untyped(typed);
        return true;
    }
    QString const field = storedRecord.constBegin().key();
    QVariant const storedValue = storedRecord.constBegin().value();
    Kind const wanted = kindOf(storedValue);
    *expected = kindName(wanted);
    if (wanted != Kind::Record)
        *expected += QStringLiteral(" such as ") + TarnJson::serialize(storedValue);

    // A whole record names the field itself; a bare value is the field.
    QVariant value = typed;
    if (kindOf(typed) == Kind::Record) {
        QVariantHash const typedRecord = typed.toHash();
        if (typedRecord.size() == 1 && typedRecord.contains(field))
            value = typedRecord.value(field);
        else if (wanted != Kind::Record)
            return false;
    }
    if (wanted == Kind::Other || !fits(wanted, value))
        return false;
    *record = QVariantHash{{field, value}};
    return true;
}
