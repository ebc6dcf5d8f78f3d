#include "cb_airable.h"

#include "airabletrace.h"
#include "tarnconstants.h"
#include "airablelog.h"

#include <QRegExp>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace {

// The cloud URL inside a tree path: the path without the worker's prefix
// and an optional prePlay prefix.
QString cloudText(CMPath const& path, QString const& workerPrefix)
{
    return path.baseWithPrefix().replace(
        QRegExp(QStringLiteral("^%1(%2:)?").arg(workerPrefix, TarnAirablePrefixPreplay()), Qt::CaseSensitive),
        QString());
}

} // namespace

void CMAirableWorker::prepareAndSendRequest(CMRequest request, char const* slot, QObject* receiver)
{
    AIRABLE_TRACE(logger, request.path().toEncoded().toStdString());
    QString const text = cloudText(request.path(), prefixText());
    LOG4CPLUS_TRACE(logger, "New path: " << text.toStdString());
    TarnUrl const url = TarnUrl::fromEncoded(text.toLatin1());

    if (m_lastListing && m_lastUrl == url) {
        LOG4CPLUS_DEBUG(logger, "Using cached result");
        CMGetRowsRequest const rows(request);
        if (!rows.isNull() && handleResponse(rows, m_lastUrl, m_lastListing))
            return;
        CMGetDataRequest const data(request);
        if (!data.isNull() && handleGetDataResponse(data, m_lastUrl, m_lastListing))
            return;
    }

    LOG4CPLUS_TRACE(logger, "sending request...");
    sendRequest(request, slot, receiver, QVariant());
    LOG4CPLUS_TRACE(logger, "request sent");
}

void CMAirableWorker::sendRequest(CMRequest const& original, char const* slot, QObject* receiver,
                                  QVariant const& data)
{
    AIRABLE_TRACE(logger, original.path().toEncoded().toStdString());
    CMRequest request = original;
    QString text = cloudText(request.path(), prefixText());
    LOG4CPLUS_TRACE(logger, "Shorten path: " << text.toStdString());
    // A prePlay path names an item; what to ask the cloud comes from the
    // request's roles, and may need the item fetched first.
    if (request.path().startsWith(addPrefix(TarnAirablePrefixPreplay()))) {
        switch (preparePrePlay(&request, &text, &slot, data)) {
        case PrePlay::Ready:
            break;
        case PrePlay::Stop:
            return;
        case PrePlay::MissingQuery:
            // The call below is still made; its answer meets a failed reply.
            request.reply().setError(CMError(CMError::DefaultName(),
                TrString(TrCharData(trExtractContext(Q_FUNC_INFO),
                                    QStringLiteral("Internal error, missing serviceType, dataType or objectId")))));
            break;
        }
    }

    CMGetRowsRequest const rows(request);
    int const from = rows.isNull() ? 0 : rows.fromRow();

    TarnUrl url;
    if (text.startsWith(QLatin1String("http://")) || text.startsWith(QLatin1String("https://"))) {
        text.replace(QLatin1Char('+'), QStringLiteral("%20"));
        url = TarnUrl::fromEncoded(text.toLatin1());
    } else {
        // A relative text keeps its own path; the base gives scheme and host.
        url = TarnUrl::fromEncoded(text.toLatin1());
        TarnUrl const base(m_config->baseUrl());
        url.setAuthority(base.authority());
        url.setScheme(base.scheme());
    }

    if (from != 0) {
        // An unset page size is not guarded against: it gives page 1.
        int const pageSize = m_config->pageSize();
        int const page = (pageSize != 0 ? from / pageSize : 0) + 1;
        auto const pagination = m_paginations.constFind(request.path());
        if (pagination != m_paginations.constEnd()) {
            url = TarnUrl::fromEncoded(pagination->getUrlForPage(page).toLatin1());
        } else {
            LOG4CPLUS_WARN(logger, "We don't have pagination in cache. Should not happen!");
            url.addQueryItem(QStringLiteral("p"), QString::number(page));
        }
    }

    if (!url.isValid()) {
        LOG4CPLUS_ERROR(logger, "Invalid url " << text.toStdString());
        request.reply().setError(CMError(CMError::DefaultName(),
            TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QStringLiteral("Internal error, invalid url: %1")),
                     {QString::fromUtf8(text.toUtf8())})));
        return;
    }

    LOG4CPLUS_DEBUG(logger, "Url: " << url.toString().toStdString() << " slot:" << (slot ? slot : ""));
    CMReply<AirableConnect::Reply> const reply = m_connect->send(url, AirableConnect::ListingReadLimit);
    QObject* const target = receiver ? receiver : this;
    QByteArray const slotName(slot);
    // Bound to the receiver: an answer that comes after it is gone (the
    // module unloaded with calls in flight) reaches nobody.
    reply.onSuccess(target, [target, slotName, request, data](AirableConnect::Reply const& answer) {
        if (slotName.isEmpty())
            return;
        QMetaObject::invokeMethod(target, slotName.constData(), Qt::AutoConnection,
                                  Q_ARG(AirableConnect::Reply, answer), Q_ARG(CMRequest, request),
                                  Q_ARG(QVariant, data));
    });
    reply.onError([request](CMError const& error) { request.reply().setError(error); });
}
