#pragma once

#include "cmpath.h"
#include "tarnhash.h"
#include "tarnvalue.h"

#include <QStringList>

// How a client edits a value. Without a type it is typed in as text; a
// select offers the rows listed at the edit's enumeration path.
namespace TarnEditType {
enum Enum : int {
    Text = 0,
    Select = 1,
};
}

// Edit rules of a value node: how a client may edit it and what it accepts.
class TarnEdit : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnEdit() = default;
    TarnEdit(TarnHash const& h) : TarnHash(h) {}

    TarnEdit& setType(int t) { insert(QStringLiteral("type"), t); return *this; }
    int type() const { return value(QStringLiteral("type")).toInt(); }
    TarnEdit& setMinLength(int n) { insert(QStringLiteral("minLength"), n); return *this; }
    int minLength() const { return value(QStringLiteral("minLength")).toInt(); }
    bool hasMinLength() const { return __contains(QStringLiteral("minLength")); }
    TarnEdit& setPassword(bool p) { insert(QStringLiteral("password"), p); return *this; }
    bool password() const { return value(QStringLiteral("password")).toBool(); }
    TarnEdit& setEnumPath(CMPath const& p) { insert(QStringLiteral("enumPath"), p.toEncoded()); return *this; }
    CMPath enumPath() const { return CMPath::fromEncoded(value(QStringLiteral("enumPath")).toString()); }

    // The values a select takes, when known. The node holding the edit reads
    // them from the rows at the enumeration path when it checks a new value.
    TarnEdit& setEnumValues(QStringList const& v) { insert(QStringLiteral("enumValues"), v); return *this; }
    QStringList enumValues() const { return value(QStringLiteral("enumValues")).toStringList(); }
    bool hasEnumValues() const { return __contains(QStringLiteral("enumValues")); }
};

namespace CMEdit {
// Checks newValue against the rules. Returns the accepted value, or an empty
// value when it breaks a rule. The old value and the path don't take part:
// the rules judge the new value alone.
TarnValue validate(TarnValue const& oldValue, TarnValue const& newValue, TarnEdit const& edit,
                   CMPath const& path);

// The rule that value breaks, said of the field ("needs a value"), or an
// empty text when it keeps them all:
// - an empty value is refused whatever the rules;
// - with a minimum length the value must hold a string of at least that many
//   characters (code points, so a character outside the BMP counts once);
// - with known enumeration values the value's string must be one of them,
//   and an enumeration without values takes nothing.
// Passwords take any string; the password flag only hides what is typed.
QString violation(TarnValue const& value, TarnEdit const& edit);
}

Q_DECLARE_METATYPE(TarnEdit)
