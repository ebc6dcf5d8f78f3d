#include "cb_airable.h"

#include "ActionItem.h"
#include "AlbumItem.h"
#include "ErrorItem.h"
#include "FormItem.h"
#include "MessageItem.h"
#include "RadioItem.h"
#include "airabletrace.h"
#include "tarnconstants.h"
#include "tarnmediadata.h"
#include "airablelog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>


namespace {

// The container type of a listing whose content changes while shown.
constexpr int kDynamicContentContainerType = 11;

std::string rowsText(QVariantList const& rows)
{
    QStringList parts;
    for (auto const& row : rows)
        parts << TarnJson::serialize(row);
    return ("(" + parts.join(QStringLiteral(", ")) + ")").toStdString();
}

} // namespace

void CMAirableWorker::on_fetchDone(AirableConnect::Reply const& reply, CMRequest const& request, QVariant const&)
{
    AIRABLE_TRACE(logger, reply.url.toString().toStdString());
    if (reply.statusCode != 200)
        LOG4CPLUS_ERROR(logger, "on_fetchDone:" << reply.url.toString().toStdString() << " code: " << reply.statusCode);

    CMGetRowsRequest const rows(request);
    if (!rows.isNull()) {
        LOG4CPLUS_TRACE(logger, "From: " << rows.fromRow() << " to: " << rows.toRow());
        if (!handleResponse(rows, reply.url, reply.object))
            setStandardErrorMessage(request);
        return;
    }
    CMGetDataRequest const data(request);
    if (!data.isNull())
        handleGetDataResponse(data, reply.url, reply.object);
}

bool CMAirableWorker::handleResponse(CMGetRowsRequest const& request, TarnUrl const& url,
                                     airable::AirableObject::Ptr object)
{
    AIRABLE_TRACE(logger, url.toString().toStdString());
    auto const error = object.dynamicCast<airable::ErrorItem>();
    keepListing(object, url);

    if (error) {
        reactTo(*error);
        if (error->message().isEmpty()) {
            setStandardErrorMessage(request);
            LOG4CPLUS_ERROR(logger, "Server returned error exception: " << error->name().toStdString()
                                        << " for request: " << ", from: " << request.fromRow()
                                        << ", to: " << request.toRow() << ", path: " << request.path());
        } else {
            request.reply().setError(CMError(QStringLiteral("Error"), TrString(error->message())));
        }
        return false;
    }
    if (m_lastListing) {
        if (m_lastListing.dynamicCast<airable::FormItem>())
            return handleForm(request, object);
        if (m_lastListing.dynamicCast<airable::MessageItem>())
            return handleMessage(request, object);
        return fillPage(request);
    }
    if (!object) {
        setStandardErrorMessage(request);
        LOG4CPLUS_ERROR(logger, "Failed to retrieve item");
        return false;
    }
    if (object.dynamicCast<airable::ActionItem>())
        return handleActionDialog(request, object);
    setStandardErrorMessage(request);
    LOG4CPLUS_ERROR(logger, "Unexpected object type");
    return false;
}

void CMAirableWorker::keepListing(airable::AirableObject::Ptr const& object, TarnUrl const& url)
{
    // The listing this one replaces goes at once: its answer's objects are
    // given back together, a few blocks, whatever the listing's size.
    m_lastListing = object.dynamicCast<airable::ListingContainer>();
    m_lastUrl = url;
}

bool CMAirableWorker::fillPage(CMGetRowsRequest const& request)
{
    AIRABLE_TRACE(logger, request.path().toEncoded().toStdString());
    if (!m_serviceNodesCreated && request.path() == prefixPath()) {
        createServiceNodes();
        LOG4CPLUS_INFO(logger, "Service nodes created");
    }
    airable::ListingContainer const& listing = *m_lastListing;
    airable::ContentItem const& listingItem = listing;

    int from = request.fromRow();
    int to = request.toRow();
    int offset = 0;
    auto const collection = listing.collection();
    if (collection) {
        // The cloud's own page size wins over the configured one from now on.
        m_config->setPageSize(collection->limit());
        offset = collection->offset();
        from -= offset;
        to -= offset;
    }

    QString const id = listing.combinedId();
    if (id.endsWith(QLatin1String("/listing/index"))) {
        QString const stype = id.split(QLatin1Char('/'), Qt::SkipEmptyParts).value(1);
        CMPath target = addPrefix(m_config->baseUrl() + QLatin1Char('/') + stype);
        QStringList const parts = request.path().splitBase();
        bool redirect = false;
        if (!stype.startsWith(QLatin1String("airable")) && target != request.path()) {
            redirect = true;
        } else if (parts.size() >= 3 && stype == QLatin1String("airable")) {
            target = addPrefix(m_config->baseUrl() + QLatin1Char('/') + parts.at(2));
            redirect = true;
        }
        if (redirect) {
            TarnRowsRoles answer;
            answer.setRowsRedirect(target);
            request.reply().setValue(answer);
            return true;
        }
    }

    QString const dataType = extractDataType(listing.name(), listing.itype());
    TarnMetaData metaData;
    metaData.setServiceID(extractServiceId(listing.stype(), dataType));

    airable::AirableVector<airable::ContentItem::Ptr> items = listing.items();
    LOG4CPLUS_TRACE(logger, items.size() << " items");
    if (dynamic_cast<airable::RadioItem const*>(&listing)) {
        // A radio's own row comes first and counts.
        items.prepend(m_lastListing);
        LOG4CPLUS_TRACE(logger, "Radio item: count is now " << items.size());
    }

    QVariantList rows;
    if (!items.isEmpty()) {
        if (to >= items.size())
            to = items.size() - 1;
        if (from < 0 || to < 0)
            return false;
        LOG4CPLUS_TRACE(logger, "Offset: " << offset << " From: " << from << " To: " << to);
        rows.reserve(to - from + 1);
        for (int i = from; i <= to; ++i)
            rows.append(QVariant(genRow(request.roles(), items[i], false)));
    }
    if (from > to) {
        LOG4CPLUS_DEBUG(logger, "We don't have requested rows, maybe they're not cached yet");
        return false;
    }

    int count = items.size();
    auto const pagination = listing.pagination();
    if (collection && pagination) {
        count = collection->size();
        if (!m_paginations.contains(request.path()))
            m_paginations.insert(request.path(),
                                 AirablePagination(pagination->url(), pagination->replace(), collection->size()));
        int const pageSize = m_config->pageSize();
        bool const needsFiller = pageSize > items.size()
            && (count - offset > items.size() || count - pageSize > offset);
        if (needsFiller) {
            if (count - pageSize > offset)
                to = pageSize - 1;
            QList<QVariant> filler;
            for (auto const& role : request.roles()) {
                if (role == TarnRoles::Type())
                    filler << QVariant(TarnRolesType::Text());
                else if (role == TarnRoles::Title())
                    filler << QVariant(QStringLiteral(" "));
                else
                    filler << QVariant();
            }
            for (int i = rows.size(); i <= to; ++i)
                rows << QVariant(filler);
        }
    }

    int const containerType = dynamicContentListings.contains(listing.name()) ? kDynamicContentContainerType : 0;
    TarnRoles context;
    if (!listing.actions().isEmpty() || !listing.description().isEmpty())
        context.setPath(addPrefix(TarnAirablePrefixContentContext() + QLatin1Char(':') + listingItem.url()));

    LOG4CPLUS_TRACE(logger, "finally: from: " << from << ", to: " << to << ", count: " << count
                                               << ", rows: " << rowsText(rows));

    TarnRowsRoles answer;
    answer.setRowsCount(count);
    answer.setRows(rows);
    TarnRoles roles;
    roles.setTitle(TrString(listing.title()));
    roles.setPath(request.path());
    roles.setDescription(TrString(processDescription(listing.description())));
    roles.setContainerType(containerType);
    roles.setId(id);
    roles.setMediaData(TarnMediaData().setMetaData(metaData));
    roles.setContext(context);
    answer.setRoles(roles);
    request.reply().setValue(answer);
    return true;
}

bool CMAirableWorker::handleGetDataResponse(CMGetDataRequest const& request, TarnUrl const& url,
                                            airable::AirableObject::Ptr object)
{
    AIRABLE_TRACE(logger, url.toString().toStdString());
    auto const error = object.dynamicCast<airable::ErrorItem>();
    keepListing(object, url);
    auto const item = object.dynamicCast<airable::ContentItem>();

    if (error) {
        reactTo(*error);
        if (error->message().isEmpty()) {
            LOG4CPLUS_ERROR(logger, "Server returned error exception getDataResponse");
            setStandardErrorMessage(request);
        } else {
            request.reply().setError(CMError(QStringLiteral("Error"), TrString(error->message())));
        }
        return false;
    }
    if (!item) {
        setStandardErrorMessage(request);
        return false;
    }
    // Any root answer settles the services, also one that holds none:
    // requests waiting for the service nodes must not fetch the root again.
    if (!m_serviceNodesCreated && request.path() == prefixPath()) {
        createServiceNodes();
        LOG4CPLUS_INFO(logger, "Service nodes created");
    }
    request.reply().setValue(genRow(request.roles(), item, true));
    return true;
}

void CMAirableWorker::setStandardErrorMessage(CMGetRowsRequest const& request)
{
    request.reply().setError(CMError(CMError::DefaultName(),
        TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QStringLiteral("Error during communication with server")))));
}

void CMAirableWorker::setStandardErrorMessage(CMRequest const& request)
{
    request.reply().setError(CMError(CMError::DefaultName(),
        TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QStringLiteral("Error during communication with server")))));
}
