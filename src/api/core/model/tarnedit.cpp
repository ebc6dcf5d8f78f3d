#include "tarnedit.h"

TarnValue CMEdit::validate(TarnValue const&, TarnValue const& newValue, TarnEdit const& edit, CMPath const&)
{
    return violation(newValue, edit).isEmpty() ? newValue : TarnValue();
}

QString CMEdit::violation(TarnValue const& value, TarnEdit const& edit)
{
    if (value.isEmpty())
        return QStringLiteral("needs a value");
    bool const hasString = value.__contains(TarnValue::StringKey());
    QString const text = value.string_();
    if (edit.hasMinLength()) {
        int const minimum = edit.minLength();
        if (!hasString || text.toUcs4().size() < minimum) {
            if (minimum <= 1)
                return QStringLiteral("needs a text");
            return QStringLiteral("needs at least %1 characters").arg(minimum);
        }
    }
    if (edit.hasEnumValues()) {
        QStringList const options = edit.enumValues();
        if (!hasString || !options.contains(text)) {
            if (options.isEmpty())
                return QStringLiteral("has no options to choose from");
            return QStringLiteral("takes one of its options, not \"%1\"").arg(text);
        }
    }
    return QString();
}
