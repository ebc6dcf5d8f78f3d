#pragma once

#include "cmpath.h"
#include "tarnhash.h"

// Describes what is playing or can be played, for the player and displays.
class TarnMetaData : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnMetaData() = default;
    TarnMetaData(TarnHash const& h) : TarnHash(h) {}

    TarnMetaData& setArtist(QString const& v) { insert(QStringLiteral("artist"), v); return *this; }
    QString artist() const { return value(QStringLiteral("artist")).toString(); }
    TarnMetaData& setAlbum(QString const& v) { insert(QStringLiteral("album"), v); return *this; }
    QString album() const { return value(QStringLiteral("album")).toString(); }
    TarnMetaData& setArtistId(QString const& v) { insert(QStringLiteral("artistId"), v); return *this; }
    TarnMetaData& setArtistCoverUri(QString const& v) { insert(QStringLiteral("artistCoverUri"), v); return *this; }
    TarnMetaData& setAlbumId(QString const& v) { insert(QStringLiteral("albumId"), v); return *this; }
    TarnMetaData& setAlbumCoverUri(QString const& v) { insert(QStringLiteral("albumCoverUri"), v); return *this; }
    TarnMetaData& setPerformer(QString const& v) { insert(QStringLiteral("performer"), v); return *this; }
    QString performer() const { return value(QStringLiteral("performer")).toString(); }
    TarnMetaData& setRadioStation(bool v) { insert(QStringLiteral("radioStation"), v); return *this; }
    TarnMetaData& setSlogan(QString const& v) { insert(QStringLiteral("slogan"), v); return *this; }
    TarnMetaData& setLive(bool v) { insert(QStringLiteral("live"), v); return *this; }
    TarnMetaData& setServiceID(QString const& v) { insert(QStringLiteral("serviceID"), v); return *this; }
    QString serviceID() const { return value(QStringLiteral("serviceID")).toString(); }
    TarnMetaData& setMaximumRetryCount(int v) { insert(QStringLiteral("maximumRetryCount"), v); return *this; }
    TarnMetaData& setPlayLogicPath(CMPath const& p) { insert(QStringLiteral("playLogicPath"), p.toEncoded()); return *this; }
    TarnMetaData& setPlaybackStateChangePath(CMPath const& p)
    {
        insert(QStringLiteral("playbackStateChangePath"), p.toEncoded());
        return *this;
    }
    TarnMetaData& setPrePlayPath(CMPath const& p) { insert(QStringLiteral("prePlayPath"), p.toEncoded()); return *this; }
    CMPath prePlayPath() const { return CMPath::fromEncoded(value(QStringLiteral("prePlayPath")).toString()); }
    TarnMetaData& setContentPlayContextPath(CMPath const& p)
    {
        insert(QStringLiteral("contentPlayContextPath"), p.toEncoded());
        return *this;
    }
};

// What a row offers to the player: resources to play and their metadata.
class TarnMediaData : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnMediaData() = default;
    TarnMediaData(TarnHash const& h) : TarnHash(h) {}

    TarnMediaData& setMetaData(TarnMetaData const& m) { insert(QStringLiteral("metaData"), m.__variant()); return *this; }
    TarnMetaData metaData() const { return TarnMetaData(value(QStringLiteral("metaData")).toHash()); }
    TarnMediaData& setResources(QVariantList const& r) { insert(QStringLiteral("resources"), r); return *this; }
    QVariantList resources() const { return value(QStringLiteral("resources")).toList(); }
};

Q_DECLARE_METATYPE(TarnMetaData)
Q_DECLARE_METATYPE(TarnMediaData)
