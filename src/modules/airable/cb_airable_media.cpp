#include "cb_airable.h"

#include "AlbumItem.h"
#include "ArtistItem.h"
#include "EpisodeItem.h"
#include "FeedContainer.h"
#include "ProgramItem.h"
#include "RadioItem.h"
#include "TrackItem.h"
#include "airabletrace.h"
#include "filterstreams.h"
#include "mimetypes.h"
#include "tarnconstants.h"
#include "tarnmediadata.h"
#include "airablelog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace {

void setIfAny(TarnMetaData& metaData, TarnMetaData& (TarnMetaData::*setter)(QString const&), QString const& text)
{
    if (!text.isEmpty())
        (metaData.*setter)(text);
}

// Seconds to milliseconds as the player has always received them: the
// product wraps at 32 bits before it is widened.
long long durationMs(int seconds)
{
    return static_cast<qint32>(static_cast<quint32>(seconds) * 1000u);
}

} // namespace

QVariant CMAirableWorker::handleMediaData(portable::SmartPointer<airable::ContentItem> item, CMPath const& path)
{
    AIRABLE_TRACE(logger, path.toEncoded().toStdString());
    TarnMetaData metaData;

    if (item && !item->playable()) {
        if (auto const album = item.dynamicCast<airable::AlbumItem>()) {
            metaData.setAlbum(album->title());
            metaData.setArtist(album->artistTitle());
            setIfAny(metaData, &TarnMetaData::setArtistId, album->artistId());
            setIfAny(metaData, &TarnMetaData::setArtistCoverUri, album->artistImageUrl());
            setIfAny(metaData, &TarnMetaData::setAlbumId, album->combinedId());
            setIfAny(metaData, &TarnMetaData::setAlbumCoverUri, album->imageUrl());
        }
        if (auto const artist = item.dynamicCast<airable::ArtistItem>()) {
            metaData.setArtist(artist->title());
            setIfAny(metaData, &TarnMetaData::setArtistId, artist->combinedId());
            setIfAny(metaData, &TarnMetaData::setArtistCoverUri, artist->imageUrl());
        }
        if (auto const listing = item.dynamicCast<airable::ListingContainer>()) {
            QString const dataType = extractDataType(listing->name(), listing->itype());
            metaData.setServiceID(extractServiceId(listing->stype(), dataType));
            return TarnMediaData().setMetaData(metaData).__variant();
        }
        return QVariant();
    }
    if (!item)
        return QVariant();

    QVector<airable::StreamItem::Ptr> streams;
    auto const episode = item.dynamicCast<airable::EpisodeItem>();
    if (episode)
        streams = episode->streams();
    auto const track = item.dynamicCast<airable::TrackItem>();
    if (track) {
        streams = track->streams();
        metaData.setArtist(track->artistTitle());
        metaData.setAlbum(track->albumTitle());
        setIfAny(metaData, &TarnMetaData::setArtistId, track->artistId());
        setIfAny(metaData, &TarnMetaData::setArtistCoverUri, track->artistImageUrl());
        setIfAny(metaData, &TarnMetaData::setAlbumId, track->albumId());
        setIfAny(metaData, &TarnMetaData::setAlbumCoverUri, track->albumImageUrl());
        // The listing decides, not the track: Qobuz names performers there.
        if (m_lastListing && m_lastListing->stype() == TarnAirableQobuzServiceType())
            metaData.setPerformer(processDescription(track->description()));
        auto const album = m_lastListing.dynamicCast<airable::AlbumItem>();
        if (metaData.album().isEmpty() && album)
            metaData.setAlbum(album->title());
    }
    auto const radio = item.dynamicCast<airable::RadioItem>();
    if (radio) {
        streams = radio->streams();
        metaData.setRadioStation(true);
        metaData.setSlogan(radio->slogan());
    }
    if (auto const feed = item.dynamicCast<airable::FeedContainer>())
        metaData.setSlogan(feed->slogan());
    if (item.dynamicCast<airable::ProgramItem>()) {
        // Programs are played by the play logic, never by streams.
        metaData.setPlayLogicPath(TarnAirableProgramPlayLogicPath());
        return TarnMediaData().setMetaData(metaData).__variant();
    }
    if (streams.isEmpty())
        return QVariant();

    filterStreams(&streams, m_config->bitrate());
    auto const& best = streams.first();
    metaData.setServiceID(extractServiceId(best->stype(), best->itype()));
    metaData.setMaximumRetryCount(streams.size());
    metaData.setPlaybackStateChangePath(addPrefix(TarnAirableStateChange()));
    if (radio)
        metaData.setLive(true);

    int const duration = track ? track->duration() : episode ? episode->duration() : 0;
    QVariantList resources;
    for (auto const& stream : streams) {
        auto const codec = stream->codec();
        TarnResource resource;
        resource.setBitRate(codec->bitrate());
        resource.setMimeType(MimeTypes::extensionToMimeType(codec->codecName(), MimeTypes::Audio::mpeg()));
        resource.setData(stream->url());
        resource.setUid(QString::number(resources.size()));
        if ((track || episode) && duration > 0)
            resource.setDuration(durationMs(duration));
        resources << resource.__variant();
    }
    TarnMediaData mediaData;
    mediaData.setResources(resources);

    QString const query = QStringLiteral("?serviceType=") + item->stype() + QStringLiteral("&dataType=")
        + item->itype() + QStringLiteral("&objectId=") + item->name();
    metaData.setPrePlayPath(addPrefix(TarnAirablePrefixPreplay()) + query);
    metaData.setContentPlayContextPath(path);
    mediaData.setMetaData(metaData);
    return mediaData.__variant();
}
