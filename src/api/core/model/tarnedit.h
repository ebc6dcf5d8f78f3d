#pragma once

#include "cmpath.h"
#include "tarnhash.h"
#include "tarnvalue.h"

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
    TarnEdit& setPassword(bool p) { insert(QStringLiteral("password"), p); return *this; }
    bool password() const { return value(QStringLiteral("password")).toBool(); }
    TarnEdit& setEnumPath(CMPath const& p) { insert(QStringLiteral("enumPath"), p.toEncoded()); return *this; }
    CMPath enumPath() const { return CMPath::fromEncoded(value(QStringLiteral("enumPath")).toString()); }
};

namespace CMEdit {
// Checks newValue against the rules. Returns the accepted value, or an empty
// value when it breaks a rule: a missing string, or one shorter than the
// minimum length. Passwords and enumerations take any string.
TarnValue validate(TarnValue const& oldValue, TarnValue const& newValue, TarnEdit const& edit,
                   CMPath const& path);
}

Q_DECLARE_METATYPE(TarnEdit)
