#include "tarnactionreply.h"

TarnActionReply& TarnActionReply::setEvents(TarnList<TarnEvent> const& events)
{
    QVariantList list;
    for (auto const& e : events)
        list << e.__variant();
    insert(QStringLiteral("events"), list);
    return *this;
}

TarnList<TarnEvent> TarnActionReply::events() const
{
    TarnList<TarnEvent> out;
    for (auto const& v : value(QStringLiteral("events")).toList())
        out << TarnEvent(v.toHash());
    return out;
}
