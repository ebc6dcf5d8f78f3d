#pragma once

#include "cmpath.h"
#include "tarnroles.h"

namespace TarnEventRowsType {
enum Enum : int {
    Close = 1,
    Reset = 2,
};
}

// An event that a set-data answer asks the client to carry out.
class TarnEvent : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnEvent() = default;

    TarnEvent& setPath(CMPath const& p) { insert(QStringLiteral("path"), p.toEncoded()); return *this; }
    CMPath path() const { return CMPath::fromEncoded(value(QStringLiteral("path")).toString()); }
    TarnEvent& setRowsType(TarnEventRowsType::Enum t) { insert(QStringLiteral("rowsType"), int(t)); return *this; }
    int rowsType() const { return value(QStringLiteral("rowsType")).toInt(); }
};

// The answer of an action: a result and events for the client.
class TarnActionReply : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnActionReply() = default;
    TarnActionReply(TarnHash const& h) : TarnHash(h) {}

    TarnActionReply& setXclass(QString const& c) { insert(QStringLiteral("xclass"), c); return *this; }
    QString xclass() const { return value(QStringLiteral("xclass")).toString(); }
    TarnActionReply& setResult(TarnRoles const& r) { insert(QStringLiteral("result"), r.__variant()); return *this; }
    TarnRoles result() const { return TarnRoles(value(QStringLiteral("result")).toHash()); }
    TarnActionReply& setEvents(TarnList<TarnEvent> const& events);
    TarnList<TarnEvent> events() const;
};

Q_DECLARE_METATYPE(TarnEvent)
Q_DECLARE_METATYPE(TarnActionReply)
