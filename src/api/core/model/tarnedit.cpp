#include "tarnedit.h"

TarnValue CMEdit::validate(TarnValue const&, TarnValue const& newValue, TarnEdit const& edit, CMPath const&)
{
    if (newValue.isEmpty())
        return TarnValue();
    if (edit.__contains(QStringLiteral("minLength"))) {
        if (!newValue.__contains(TarnValue::StringKey()) || newValue.string_().size() < edit.minLength())
            return TarnValue();
    }
    return newValue;
}
