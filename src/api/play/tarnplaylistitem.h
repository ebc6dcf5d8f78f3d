#pragma once

#include "tarnhash.h"

// One entry of a play queue as a content module prepares it.
class TarnPlayListItem : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnPlayListItem() = default;
    TarnPlayListItem(TarnHash const& h) : TarnHash(h) {}

    TarnPlayListItem& setTitle(QString const& v) { insert(QStringLiteral("title"), v); return *this; }
    QString title() const { return value(QStringLiteral("title")).toString(); }
    TarnPlayListItem& setAlbum(QString const& v) { insert(QStringLiteral("album"), v); return *this; }
    QString album() const { return value(QStringLiteral("album")).toString(); }
    TarnPlayListItem& setArtist(QString const& v) { insert(QStringLiteral("artist"), v); return *this; }
    QString artist() const { return value(QStringLiteral("artist")).toString(); }
    TarnPlayListItem& setDurationSeconds(int v) { insert(QStringLiteral("durationSeconds"), v); return *this; }
    int durationSeconds() const { return value(QStringLiteral("durationSeconds")).toInt(); }
    TarnPlayListItem& setUrl(QString const& v) { insert(QStringLiteral("url"), v); return *this; }
    QString url() const { return value(QStringLiteral("url")).toString(); }
    // The entry's row with all roles, as JSON text.
    TarnPlayListItem& setTarnRoles(QString const& json) { insert(QStringLiteral("tarnRoles"), json); return *this; }
    QString tarnRoles() const { return value(QStringLiteral("tarnRoles")).toString(); }
};

Q_DECLARE_METATYPE(TarnPlayListItem)
