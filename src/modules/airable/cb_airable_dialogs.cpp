#include "cb_airable.h"

#include "airableerrors.h"
#include "FormItem.h"
#include "MessageItem.h"
#include "airableform.h"
#include "airablemessage.h"
#include "airableoauth.h"
#include "airabletrace.h"
#include "cmsubscribe.h"
#include "tarnactionreply.h"
#include "tarnconstants.h"
#include "airablelog.h"

#include <QRegExp>
#include <functional>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace {

// Gives a dialog the first id given back, else a new one, and keeps it as
// the most recently used. An id pushed out of the cache is not given back:
// only a dialog nobody watches any more returns its id.
template <typename T>
CMPath insertDialog(QCache<int, QSharedPointer<T>>* cache, QSet<int>* freeIds, int* nextId, CMPath const& prefix,
                    std::function<QSharedPointer<T>(int)> const& make)
{
    int id = 0;
    if (!freeIds->isEmpty()) {
        id = *freeIds->begin();
        freeIds->erase(freeIds->begin());
    } else {
        id = (*nextId)++;
    }
    cache->insert(id, new QSharedPointer<T>(make(id)), 1);
    return prefix + QString::number(id);
}

TarnRowsRoles redirectTo(CMPath const& target)
{
    TarnRowsRoles answer;
    answer.setRowsRedirect(target);
    return answer;
}

} // namespace

CMPath CMAirableWorker::insertForm(std::function<QSharedPointer<AirableForm>(int)> const& make)
{
    return insertDialog(&m_forms, &m_freeFormIds, &m_nextFormId, m_formPrefix, make);
}

CMPath CMAirableWorker::insertMessage(std::function<QSharedPointer<AirableMessage>(int)> const& make)
{
    return insertDialog(&m_messages, &m_freeMessageIds, &m_nextMessageId, m_messagePrefix, make);
}

// The object's type is spelled out, not as airable::AirableObject::Ptr, in
// these two definitions: their signature texts are the translation contexts
// of the texts they raise, and translators know them by this spelling.
bool CMAirableWorker::handleForm(CMGetRowsRequest const& request,
                                 portable::SmartPointer<airable::AirableObject> object)
{
    AIRABLE_TRACE(logger, request.path().toEncoded().toStdString());
    auto const form = object.dynamicCast<airable::FormItem>();
    if (!form) {
        request.reply().setError(translatedError(Q_FUNC_INFO, QStringLiteral("Internal airable error: not a form!")));
        return false;
    }
    CMPath target = insertForm([this, form](int id) { return AirableForm::create(this, id, form); });

    QString const id = m_lastListing ? m_lastListing->combinedId() : QString();
    if (id.endsWith(QLatin1String("/form/login"))) {
        // A login met below a service's root is shown from that root, so
        // that the service opens once the user has logged in.
        QString const service = id.split(QLatin1Char('/'), Qt::SkipEmptyParts).value(1);
        LOG4CPLUS_TRACE(logger, "service: " << service.toStdString() << " request path: " << request.path());
        CMPath const servicePath = addPrefix(m_config->baseUrl() + QLatin1Char('/') + service);
        if (!service.contains(QLatin1String("airable")) && servicePath != request.path())
            target = servicePath;
    }
    request.reply().setValue(redirectTo(target));
    return true;
}

bool CMAirableWorker::handleMessage(CMGetRowsRequest const& request,
                                    portable::SmartPointer<airable::AirableObject> object)
{
    AIRABLE_TRACE(logger, request.path().toEncoded().toStdString());
    auto const message = object.dynamicCast<airable::MessageItem>();
    if (!message) {
        request.reply().setError(translatedError(Q_FUNC_INFO, QStringLiteral("Internal airable error: not a message!")));
        return false;
    }
    if (!message->reaction().isEmpty())
        performReaction(message->reaction());
    else if (!message->perform().isEmpty())
        performReaction(message->perform());

    CMPath const target = insertMessage([this, message, request](int id) {
        auto const dialog = AirableMessage::create(this, id, message);
        if (message->name() == QLatin1String("oauth"))
            m_oauth->setLoginMsg(dialog, request.path());
        return dialog;
    });
    request.reply().setValue(redirectTo(target));
    m_lastListing = nullptr;
    m_lastUrl = TarnUrl();
    return true;
}

void CMAirableWorker::submitForm(CMSetDataRequest const& request, char const* signature)
{
    AIRABLE_TRACE(logger, request.path().toEncoded().toStdString());
    QRegExp const pattern(QStringLiteral("(^") + prefixText() + TarnAirablePrefixForm() + QStringLiteral("(\\d+)):(.+)"),
                          Qt::CaseSensitive);
    bool known = false;
    int id = 0;
    if (pattern.indexIn(request.path().baseWithPrefix()) >= 0)
        id = pattern.cap(2).toInt(&known);
    if (!known || !m_forms.contains(id)) {
        request.reply().setError(translatedError(signature, QStringLiteral("Internal airable error: wrong form index!")));
        return;
    }
    QSharedPointer<AirableForm> const form = *m_forms.object(id);
    QString error;
    TarnUrl const url = form->getQuery(pattern.cap(3), &error);
    // A plus the user typed must reach the cloud as a plus, not a blank.
    QString const text = QString::fromLatin1(url.toEncoded()).replace(QLatin1Char('+'), QStringLiteral("%2B"));
    CMPath const target = CMPath::fromPrefixWithBase(text);
    if (!error.isEmpty()) {
        LOG4CPLUS_ERROR(logger, error.toStdString());
        request.reply().setError(translatedError(signature, QStringLiteral("Input field validation error!")));
        return;
    }
    LOG4CPLUS_TRACE(logger, "Submitting form: " << text.toStdString());

    CMPath closePath;
    if (form->formId().endsWith(QLatin1String("login"))) {
        closePath = m_formPrefix + QString::number(id);
    } else if (form->formId().endsWith(QLatin1String("search"))) {
        // A search is browsed as a listing of its own; the cloud is asked
        // when the client opens it.
        TarnActionReply answer;
        answer.setXclass(QStringLiteral("TarnActionReply"));
        answer.setResult(TarnRoles().setPath(addPrefix(text)));
        request.reply().setValue(answer.__variant());
        return;
    }
    cloudCall(request, target, closePath);
}

void CMAirableWorker::submitMessage(CMSetDataRequest const& request)
{
    AIRABLE_TRACE(logger, request.path().toEncoded().toStdString());
    QRegExp const pattern(QStringLiteral("(^") + prefixText() + TarnAirablePrefixMessage() + QStringLiteral("(\\d+)):(\\d+)"),
                          Qt::CaseSensitive);
    bool known = false;
    int id = 0;
    int index = 0;
    if (pattern.indexIn(request.path().baseWithPrefix()) >= 0) {
        id = pattern.cap(2).toInt(&known);
        bool indexOk = false;
        index = pattern.cap(3).toInt(&indexOk);
        known = known && indexOk;
    }
    if (!known || !m_messages.contains(id)) {
        request.reply().setError(translatedError(Q_FUNC_INFO, QStringLiteral("Internal airable error: wrong index!")));
        return;
    }
    CMPath const messagePath = CMPath::fromPrefixWithBase(pattern.cap(1));
    QSharedPointer<AirableMessage> const message = *m_messages.object(id);
    QString const link = message->getLink(index);
    QString const combined = message->getCombinedId(index);
    TarnUrl const url = TarnUrl::fromEncoded(link.toUtf8());

    if (combined.endsWith(QLatin1String("/button/resume"))) {
        resumePausedPlayback(url, request);
        nodes()->subscribe()->changed(messagePath, CMSubscribe::RowsChangeClose(), -1, -1);
        return;
    }

    TarnActionReply answer;
    answer.setXclass(QStringLiteral("TarnActionReply"));
    CMPath result;
    if (!url.path().isEmpty()) {
        result = addPrefix(link);
        answer.setResult(TarnRoles().setPath(result));
    } else {
        answer.setEvents({TarnEvent().setRowsType(TarnEventRowsType::Close)});
    }
    request.reply().setValue(answer.__variant());
    m_paginations.remove(result);
    nodes()->subscribe()->changed(messagePath, CMSubscribe::RowsChangeClose(), -1, -1);
    nodes()->subscribe()->changed(result, CMSubscribe::RowsChangeReset(), -1, -1);
}
