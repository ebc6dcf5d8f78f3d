#pragma once

#include "cmpath.h"
#include "tarnroles.h"

// The answer to a rows request: a page of rows, the listing's total count
// and its own roles, or a redirect that sends the client elsewhere.
class TarnRowsRoles : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnRowsRoles() = default;

    TarnRowsRoles& setRows(QVariant const& rows) { insert(QStringLiteral("rows"), rows); return *this; }
    QVariantList rows() const { return value(QStringLiteral("rows")).toList(); }
    TarnRowsRoles& setRowsCount(int n) { insert(QStringLiteral("rowsCount"), n); return *this; }
    int rowsCount() const { return value(QStringLiteral("rowsCount")).toInt(); }
    TarnRowsRoles& setRoles(TarnRoles const& r) { insert(QStringLiteral("roles"), r.__variant()); return *this; }
    TarnRoles roles() const { return TarnRoles(value(QStringLiteral("roles")).toHash()); }
    TarnRowsRoles& setRowsRedirect(CMPath const& p) { insert(QStringLiteral("rowsRedirect"), p.toEncoded()); return *this; }
    CMPath rowsRedirect() const { return CMPath::fromEncoded(value(QStringLiteral("rowsRedirect")).toString()); }
    bool hasRowsRedirect() const { return __contains(QStringLiteral("rowsRedirect")); }
};

Q_DECLARE_METATYPE(TarnRowsRoles)
