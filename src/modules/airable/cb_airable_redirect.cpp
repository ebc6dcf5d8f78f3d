#include "cb_airable.h"

#include "airableerrors.h"
#include "ErrorItem.h"
#include "ImagesContainer.h"
#include "RedirectItem.h"
#include "airabletrace.h"
#include "mimetypes.h"
#include "tarnconstants.h"
#include "tarnmediadata.h"
#include "airablelog.h"

#include <QDataStream>
#include <algorithm>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace {

QVariant keyHeaders(airable::EncryptionItem const& encryption)
{
    QStringList headers;
    if (auto const items = encryption.headers())
        for (auto const& header : items->key())
            headers << header;
    QVariantHash amazon;
    amazon.insert(QStringLiteral("key-headers"), headers);
    QVariantHash crypto;
    crypto.insert(QStringLiteral("amazonMusic"), amazon);
    return crypto;
}

} // namespace

// A path resolved again reports to the URLs of its newer stream. Its older
// records go, unless reports of the path still wait to be sent, which are
// theirs: found first by the path, they would take the reports of every
// later play of the row, and stay for good, one more for each play.
void CMAirableWorker::keepEventUrls(CMPath const& path, QHash<QString, QString> const& urls)
{
    bool const awaited = std::any_of(m_eventQueue.cbegin(), m_eventQueue.cend(),
                                     [&path](Event const& e) { return e.path == path; });
    if (!awaited) {
        m_eventRecords.erase(std::remove_if(m_eventRecords.begin(), m_eventRecords.end(),
                                            [&path](EventRecord const& r) { return r.path == path; }),
                             m_eventRecords.end());
    }
    m_eventRecords << EventRecord{path, urls};
}

QStringList CMAirableWorker::unpackPrePlayData(QString const& packed)
{
    QByteArray const data = QByteArray::fromBase64(packed.toLatin1());
    QDataStream in(data);
    qint32 count = 0;
    in >> count;
    // The count is only the sender's word: each string takes at least its
    // four bytes of length, and a corrupt one ends the list.
    QStringList urls;
    urls.reserve(qBound(0, count, data.size() / 4));
    for (qint32 i = 0; i < count && !in.atEnd() && in.status() == QDataStream::Ok; ++i) {
        QString url;
        in >> url;
        urls << url;
    }
    return urls;
}

CMAirableWorker::PrePlay CMAirableWorker::preparePrePlay(CMRequest* request, QString* path, char const** slot,
                                                         QVariant const& context)
{
    CMSetDataRequest const set(*request);
    if (set.isNull()) {
        LOG4CPLUS_ERROR(logger, "Internal error, SetDataRequest expected");
        return PrePlay::Stop;
    }
    TarnRoles roles(set.value().toHash());
    if (!context.isNull())
        roles.__mergeWith(TarnHash(context.toHash()));
    TarnMediaData mediaData = roles.mediaData();
    QVariantList resources = mediaData.resources();

    if (!resources.isEmpty() && TarnResource(resources.first().toHash()).__contains(TarnResource::Data())) {
        TarnResource const active = mediaData.activeResource();
        *path = (active.isEmpty() ? TarnResource(resources.first().toHash()) : active).data().toString();
        return PrePlay::Ready;
    }

    QString const packed = mediaData.metaData().prePlayData();
    if (!packed.isEmpty()) {
        QStringList const urls = unpackPrePlayData(packed);
        QVariantList unpacked;
        for (int i = 0; i < urls.size(); ++i) {
            TarnResource resource = i < resources.size() ? TarnResource(resources.at(i).toHash())
                                                         : TarnResource().setMimeType(MimeTypes::Audio::unknown());
            resource.setData(urls.at(i));
            resource.setUid(QString::number(i));
            unpacked << resource.__variant();
        }
        mediaData.setResources(unpacked);
        roles.setMediaData(mediaData);
        // The slot has to see the resources that were unpacked here.
        *request = CMSetDataRequest(set.path(), set.role(), roles.__variant(), set.reply());
        *path = TarnResource(unpacked.value(0).toHash()).data().toString();
        return PrePlay::Ready;
    }

    TarnUrl const query = TarnUrl::fromEncoded(path->toLatin1());
    QString const serviceType = query.queryItemValue(QStringLiteral("serviceType"));
    QString const dataType = query.queryItemValue(QStringLiteral("dataType"));
    QString const objectId = query.queryItemValue(QStringLiteral("objectId"));
    if (serviceType.isEmpty() || dataType.isEmpty() || objectId.isEmpty())
        return PrePlay::MissingQuery;
    *path = m_config->baseUrl() + QStringLiteral("/id/%1/%2/%3").arg(serviceType, dataType, objectId);
    *slot = "on_gettingTrackDone";
    return PrePlay::Ready;
}

void CMAirableWorker::on_redirectDone(AirableConnect::Reply const& reply, CMRequest const& request,
                                      QVariant const& context)
{
    LOG4CPLUS_TRACE(logger, "on_redirectDone: " << reply.url.toString().toStdString());
    CMSetDataRequest const set(request);
    airable::AirableObject::Ptr const object = reply.object;
    auto const error = object.dynamicCast<airable::ErrorItem>();
    auto const redirect = object.dynamicCast<airable::RedirectItem>();

    if (error) {
        if (reactTo(*error)) {
            setClosePathReply(set);
            return;
        }
        if (!error->message().isEmpty())
            set.reply().setError(CMError(QStringLiteral("Error"), TrString(error->message())));
    } else if (redirect) {
        TarnRoles roles(set.value().toHash());
        roles.__mergeWith(TarnHash(context.toHash()));
        TarnMediaData mediaData = roles.mediaData();

        auto const events = redirect->events();
        if (events && !roles.path().isEmpty())
            keepEventUrls(roles.path(), events->events());

        TarnResource resource = mediaData.activeResource();
        if (resource.isEmpty()) {
            QVariantList const resources = mediaData.resources();
            // The prePlay road always leaves a resource behind.
            AIRABLE_ASSERT(!resources.isEmpty(), "!resources.isEmpty()");
            resource = TarnResource(resources.first().toHash());
        }
        resource.setUri(redirect->url());
        if (redirect->url().isEmpty()) {
            LOG4CPLUS_ERROR(logger, "Url in redirect item is empty");
            set.reply().setError(
                translatedError(Q_FUNC_INFO, QStringLiteral("Playback Url is empty"), QStringLiteral("Error")));
            return;
        }

        if (auto const content = redirect->content()) {
            auto const images = content->firstChildOf<airable::ImagesContainer>();
            if (images && !images->images().isEmpty())
                roles.setIcon(images->images().last()->src());
            auto const encryption = redirect->encryption();
            // Only Amazon Music hands keys to the player; others play as they are.
            if (content->stype() == TarnAirableAmazonMusicServiceType() && encryption) {
                if (encryption->type() != TarnAirableEncryptionWidevineType()) {
                    LOG4CPLUS_ERROR(logger, "Item has unsupported encryption type: " << encryption->type().toStdString());
                    set.reply().setError(translatedError(Q_FUNC_INFO, QStringLiteral("Unsupported encryption type"), QStringLiteral("Error")));
                    return;
                }
                resource.setCryptoData(keyHeaders(*encryption));
            }
        }
        mediaData.setActiveResource(resource);
        roles.setMediaData(mediaData);
        set.reply().setValue(roles.__variant());
        return;
    }
    LOG4CPLUS_ERROR(logger, "Failed to redirect");
    set.reply().setError(
        translatedError(Q_FUNC_INFO, QStringLiteral("Can't retrieve track from server")));
}
