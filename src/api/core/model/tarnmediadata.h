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
    bool radioStation() const { return value(QStringLiteral("radioStation")).toBool(); }
    TarnMetaData& setSlogan(QString const& v) { insert(QStringLiteral("slogan"), v); return *this; }
    QString slogan() const { return value(QStringLiteral("slogan")).toString(); }
    TarnMetaData& setLive(bool v) { insert(QStringLiteral("live"), v); return *this; }
    bool live() const { return value(QStringLiteral("live")).toBool(); }
    TarnMetaData& setServiceID(QString const& v) { insert(QStringLiteral("serviceID"), v); return *this; }
    QString serviceID() const { return value(QStringLiteral("serviceID")).toString(); }
    TarnMetaData& setMaximumRetryCount(int v) { insert(QStringLiteral("maximumRetryCount"), v); return *this; }
    int maximumRetryCount() const { return value(QStringLiteral("maximumRetryCount")).toInt(); }
    TarnMetaData& setPlayLogicPath(CMPath const& p) { insert(QStringLiteral("playLogicPath"), p.toEncoded()); return *this; }
    CMPath playLogicPath() const { return path(QStringLiteral("playLogicPath")); }
    TarnMetaData& setPlaybackStateChangePath(CMPath const& p)
    {
        insert(QStringLiteral("playbackStateChangePath"), p.toEncoded());
        return *this;
    }
    CMPath playbackStateChangePath() const { return path(QStringLiteral("playbackStateChangePath")); }
    TarnMetaData& setPrePlayPath(CMPath const& p) { insert(QStringLiteral("prePlayPath"), p.toEncoded()); return *this; }
    CMPath prePlayPath() const { return path(QStringLiteral("prePlayPath")); }
    TarnMetaData& setContentPlayContextPath(CMPath const& p)
    {
        insert(QStringLiteral("contentPlayContextPath"), p.toEncoded());
        return *this;
    }
    CMPath contentPlayContextPath() const { return path(QStringLiteral("contentPlayContextPath")); }
    // Stream URLs packed by the service that made the row: base64 of a
    // QDataStream with a 32-bit count and that many strings.
    // How the user rated the media: a TarnRating of the play library.
    static QString const& Rating()
    {
        static QString const key = QStringLiteral("rating");
        return key;
    }
    TarnMetaData& setRating(TarnHash const& r) { insert(Rating(), r.__variant()); return *this; }
    TarnHash rating() const { return TarnHash(value(Rating()).toHash()); }
    TarnMetaData& setPrePlayData(QString const& v) { insert(QStringLiteral("prePlayData"), v); return *this; }
    QString prePlayData() const { return value(QStringLiteral("prePlayData")).toString(); }

    QString artistId() const { return value(QStringLiteral("artistId")).toString(); }
    QString artistCoverUri() const { return value(QStringLiteral("artistCoverUri")).toString(); }
    QString albumId() const { return value(QStringLiteral("albumId")).toString(); }
    QString albumCoverUri() const { return value(QStringLiteral("albumCoverUri")).toString(); }

private:
    // An absent path stays empty rather than becoming the root path.
    CMPath path(QString const& key) const
    {
        return __contains(key) ? CMPath::fromEncoded(value(key).toString()) : CMPath();
    }
};

// One way to play an item: a stream with its format and, once resolved, the
// URI the player opens. Data is what the resolver needs to find the URI.
class TarnResource : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnResource() = default;
    TarnResource(TarnHash const& h) : TarnHash(h) {}

    static QString const& Data()
    {
        static QString const key(QStringLiteral("data"));
        return key;
    }

    TarnResource& setUri(QString const& v) { insert(QStringLiteral("uri"), v); return *this; }
    QString uri() const { return value(QStringLiteral("uri")).toString(); }
    TarnResource& setData(QVariant const& v) { insert(Data(), v); return *this; }
    QVariant data() const { return value(Data()); }
    TarnResource& setUid(QString const& v) { insert(QStringLiteral("uid"), v); return *this; }
    QString uid() const { return value(QStringLiteral("uid")).toString(); }
    TarnResource& setMimeType(QString const& v) { insert(QStringLiteral("mimeType"), v); return *this; }
    QString mimeType() const { return value(QStringLiteral("mimeType")).toString(); }
    TarnResource& setBitRate(int v) { insert(QStringLiteral("bitRate"), v); return *this; }
    int bitRate() const { return value(QStringLiteral("bitRate")).toInt(); }
    // Milliseconds; absent for live streams and unknown lengths.
    TarnResource& setDuration(long long v) { insert(QStringLiteral("duration"), v); return *this; }
    bool hasDuration() const { return __contains(QStringLiteral("duration")); }
    long long duration() const { return value(QStringLiteral("duration")).toLongLong(); }
    // What a decrypting player needs, keyed by the service that encrypts.
    TarnResource& setCryptoData(QVariant const& v) { insert(QStringLiteral("cryptoData"), v); return *this; }
    QVariant cryptoData() const { return value(QStringLiteral("cryptoData")); }
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
    // The resource the player plays now; empty until one was chosen.
    TarnMediaData& setActiveResource(TarnResource const& r)
    {
        insert(QStringLiteral("activeResource"), r.__variant());
        return *this;
    }
    TarnResource activeResource() const { return TarnResource(value(QStringLiteral("activeResource")).toHash()); }
};

Q_DECLARE_METATYPE(TarnMetaData)
Q_DECLARE_METATYPE(TarnMediaData)
Q_DECLARE_METATYPE(TarnResource)
