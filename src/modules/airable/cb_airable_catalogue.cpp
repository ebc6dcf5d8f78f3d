#include "cb_airable.h"

#include "airabletrace.h"
#include "cmnode.h"
#include "tarnconstants.h"
#include "airablelog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

QString CMAirableWorker::extractServiceId(QString const& stype, QString const& dataType)
{
    if (stype == TarnAirableAirableServiceType()) {
        if (dataType == TarnAirableAirableRadioDataType() || dataType == QLatin1String("radio"))
            return TarnService_AirableRadios_Id();
        if (dataType == TarnAirableAirableFeedDataType() || dataType == QLatin1String("feed"))
            return TarnService_AirablePodcasts_Id();
        return TarnService_Airable_Id();
    }
    static QList<QPair<QString const*, QString const*>> const services{
        {&TarnAirableDeezerServiceType(), &TarnService_Deezer_Id()},
        {&TarnAirableQobuzServiceType(), &TarnService_Qobuz_Id()},
        {&TarnAirableNapsterServiceType(), &TarnService_Napster_Id()},
        {&TarnAirableTidalServiceType(), &TarnService_Tidal_Id()},
        {&TarnAirableHighresAudioServiceType(), &TarnService_HighresAudio_Id()},
        {&TarnAirableAmazonMusicServiceType(), &TarnService_AmazonMusic_Id()},
    };
    for (auto const& s : services)
        if (stype == *s.first)
            return *s.second;
    return TarnService_Airable_Id();
}

QString CMAirableWorker::extractDataType(QString const& id, QString const& itype)
{
    if (id.endsWith(QLatin1String("episodes")) || id.endsWith(QLatin1String("feeds")))
        return TarnAirableAirableFeedDataType();
    if (id.endsWith(QLatin1String("radios")))
        return TarnAirableAirableRadioDataType();
    return itype;
}

QString CMAirableWorker::extractServiceIcon(QString const& combinedId)
{
    static QHash<QString, QString> const icons{
        {QStringLiteral("airable://airable/service/airable.radios"), TarnService_AirableRadios_Icon()},
        {QStringLiteral("airable://airable/service/airable.feeds"), TarnService_AirablePodcasts_Icon()},
        {QStringLiteral("airable://airable/service/deezer"), TarnService_Deezer_Icon()},
        {QStringLiteral("airable://airable/service/qobuz"), TarnService_Qobuz_Icon()},
        {QStringLiteral("airable://airable/service/napster"), TarnService_Napster_Icon()},
        {QStringLiteral("airable://airable/service/tidal"), TarnService_Tidal_Icon()},
        {QStringLiteral("airable://airable/service/highresaudio"), TarnService_HighresAudio_Icon()},
        {QStringLiteral("airable://airable/service/amazon"), TarnService_AmazonMusic_Icon()},
    };
    return icons.value(combinedId);
}

void CMAirableWorker::createServiceNodes()
{
    AIRABLE_TRACE(logger);
    if (m_serviceNodesCreated)
        return;
    auto const services = m_lastListing ? m_lastListing->items() : airable::AirableVector<airable::ContentItem::Ptr>();
    for (auto const& item : services) {
        LOG4CPLUS_TRACE(logger, "Found service: " << item->name().toStdString() << " url: " << item->url().toStdString());
        TarnUrl const url(item->url());
        if (!url.isValid()) {
            LOG4CPLUS_WARN(logger, "Couldn't parse service URL: " << item->url().toStdString());
            continue;
        }
        CMRedirectRowsNode::create(nodes(), TarnAirableBrowseServicePrefix() + item->name(),
                                   addPrefix(url.toString()));
    }
    m_serviceNodesCreated = true;
}
