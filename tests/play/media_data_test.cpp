#include "play_fixture.h"

namespace {

TarnMediaData mediaOf(TarnRoles const& row)
{
    return row.mediaData();
}

TarnResource resourceAt(TarnMediaData const& media, int i)
{
    return TarnResource(media.resources().value(i).toHash());
}

} // namespace

class MediaCatalogue : public Play
{
};

TEST_F(MediaCatalogue, radioRowOffersItsStreamsWithinTheBitrateAndAPrePlayPath)
{
    QList<TarnRoles> const radios = rowRoles(at(QStringLiteral("/airable/radios/popular")), 0, 0);
    ASSERT_EQ(radios.size(), 1);
    TarnMediaData const media = mediaOf(radios[0]);
    TarnMetaData const meta = media.metaData();

    // Streams of 128, 64 and 256 kbit/s at a limit of 192: best first.
    ASSERT_EQ(media.resources().size(), 2);
    for (int i = 0; i < 2; ++i) {
        TarnResource const r = resourceAt(media, i);
        EXPECT_EQ(r.uid(), QString::number(i));
        EXPECT_EQ(r.bitRate(), i == 0 ? 128 : 64);
        EXPECT_EQ(r.data().toString(), cloud->baseUrl() + QStringLiteral("/airable/radios/r1001/streams/%1").arg(i + 1));
        EXPECT_FALSE(r.hasDuration()) << "a radio has no end";
        EXPECT_TRUE(r.uri().isEmpty()) << "resolved only when played";
    }
    EXPECT_EQ(resourceAt(media, 0).mimeType(), MimeTypes::Audio::mpeg());
    EXPECT_EQ(meta.maximumRetryCount(), 2);
    EXPECT_TRUE(meta.radioStation());
    EXPECT_TRUE(meta.live());
    EXPECT_EQ(meta.slogan(), QStringLiteral("Fado and Portuguese songs from Lisbon"));
    // The service comes from the stream, whose type word is the stream's own.
    EXPECT_EQ(meta.serviceID(), TarnService_Airable_Id());
    EXPECT_EQ(meta.prePlayPath(),
              worker->addPrefix(QStringLiteral("preplay?serviceType=airable&dataType=radio&objectId=r1001")));
    EXPECT_EQ(meta.playbackStateChangePath(), worker->addPrefix(TarnAirableStateChange()));
    EXPECT_EQ(meta.contentPlayContextPath(),
              worker->addPrefix(QStringLiteral("playcontext:") + cloud->baseUrl() + QStringLiteral("/airable/radios/r1001")));
}

class MediaDocs : public Play
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/album": {"id": ["qobuz", "album", "al1"], "title": "Blue Album", "url": "{base}/album", "content": {"entries": [
    {"id": ["qobuz", "track", "t1"], "title": "One", "duration": 180,
     "description": "EN: Anna Solo, voice\r\nDE: Anna Solo, Gesang",
     "artist": {"id": ["qobuz", "artist", "ar1"], "title": "The Band"},
     "streams": [{"id": ["qobuz", "radio.stream", "t1"], "url": "{base}/s/t1", "codec": {"name": "flac", "bitrate": 1411}}]},
    {"id": ["qobuz", "track", "t2"], "title": "Endless", "duration": 3000000,
     "streams": [{"id": ["qobuz", "radio.stream", "t2"], "url": "{base}/s/t2", "codec": {"name": "mp3", "bitrate": 128}}]},
    {"id": ["qobuz", "track", "t3"], "title": "Unknown length", "duration": 0,
     "album": {"id": ["qobuz", "album", "other"], "title": "Own Album"},
     "streams": [{"id": ["qobuz", "radio.stream", "t3"], "url": "{base}/s/t3", "codec": {"name": "mp3", "bitrate": 128}}]},
    {"id": ["qobuz", "track", "t4"], "title": "No streams", "streams": []}
  ]}},
  "/shelf": {"id": ["deezer", "listing", "shelf"], "title": "Shelf", "content": {"entries": [
    {"id": ["deezer", "album", "al2"], "title": "Red Album", "url": "{base}/al2",
     "artist": {"id": ["deezer", "artist", "ar2"], "title": "Solo"},
     "image": {"url": "{base}/images/al2.svg"}},
    {"id": ["deezer", "program", "flow"], "title": "Flow", "url": "{base}/flow",
     "streams": [{"id": ["deezer", "radio.stream", "f"], "url": "{base}/s/f", "codec": {"name": "mp3", "bitrate": 128}}]}
  ]}}
})";
    }
};

TEST_F(MediaDocs, tracksOfAQobuzAlbumInheritItsTitleAndNameTheirPerformer)
{
    QList<TarnRoles> const tracks = rowRoles(at(QStringLiteral("/album")), 0, 3);
    ASSERT_EQ(tracks.size(), 4);

    TarnMediaData const one = mediaOf(tracks[0]);
    EXPECT_EQ(one.metaData().album(), QStringLiteral("Blue Album"));
    EXPECT_EQ(one.metaData().artist(), QStringLiteral("The Band"));
    EXPECT_EQ(one.metaData().performer(), QStringLiteral("Anna Solo, voice"));
    EXPECT_EQ(one.metaData().serviceID(), TarnService_Qobuz_Id());
    ASSERT_EQ(one.resources().size(), 1) << "above the limit, the lowest stream stays";
    EXPECT_EQ(resourceAt(one, 0).duration(), 180000);
    EXPECT_EQ(resourceAt(one, 0).mimeType(), MimeTypes::extensionToMimeType(QStringLiteral("flac"), QString()));

    // Seconds times 1000 wrap at 32 bits, as the player has always seen them.
    EXPECT_EQ(resourceAt(mediaOf(tracks[1]), 0).duration(), qint64(3000000) * 1000 - (qint64(1) << 32));

    TarnMediaData const zero = mediaOf(tracks[2]);
    EXPECT_FALSE(resourceAt(zero, 0).hasDuration());
    EXPECT_EQ(zero.metaData().album(), QStringLiteral("Own Album"));

    EXPECT_TRUE(tracks[3].mediaData().isEmpty()) << "a track without streams has no media data";
}

TEST_F(MediaDocs, anAlbumRowDescribesItselfAndAProgramPointsToThePlayLogic)
{
    QList<TarnRoles> const shelf = rowRoles(at(QStringLiteral("/shelf")), 0, 1);
    ASSERT_EQ(shelf.size(), 2);

    TarnMediaData const album = mediaOf(shelf[0]);
    EXPECT_TRUE(album.resources().isEmpty());
    EXPECT_EQ(album.metaData().album(), QStringLiteral("Red Album"));
    EXPECT_EQ(album.metaData().artist(), QStringLiteral("Solo"));
    EXPECT_EQ(album.metaData().artistId(), QStringLiteral("ar2"));
    EXPECT_EQ(album.metaData().albumId(), QStringLiteral("airable://deezer/album/al2"));
    EXPECT_EQ(album.metaData().albumCoverUri(), cloud->baseUrl() + QStringLiteral("/images/al2.svg"));
    EXPECT_EQ(album.metaData().serviceID(), TarnService_Deezer_Id());
    EXPECT_TRUE(album.metaData().prePlayPath().isEmpty());

    TarnMediaData const program = mediaOf(shelf[1]);
    EXPECT_EQ(program.metaData().playLogicPath(), TarnAirableProgramPlayLogicPath());
    EXPECT_TRUE(program.resources().isEmpty()) << "streams of a program are ignored";
    EXPECT_TRUE(program.metaData().prePlayPath().isEmpty());
}
