#include "cb_airable.h"

#include "cmhandover.h"

#include "AirableConfigImpl.h"
#include "Portable_BlockPool.h"
#include "airableconnect.h"
#include "airableoauth.h"
#include "airableprogramplayLogic.h"
#include "airabletrace.h"
#include "cmconnect.h"
#include "cmroot.h"
#include "tarnconstants.h"
#include "airablelog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

QStringList const contextOpeningActions{QStringLiteral("playlist.insert")};
QStringList const dynamicContentListings{QStringLiteral("library.history")};

namespace {

TarnValue platformValue(CMPath const& path)
{
    return TarnValue(TarnHash(CMRoot()->getValue(path).toHash()));
}

// The tail of a form or message path as its number; false when the rest is
// not a plain decimal number.
bool dialogNumber(CMPath const& path, CMPath const& prefix, int* number)
{
    QString rest = path.base();
    rest.remove(prefix.base(), Qt::CaseSensitive);
    bool ok = false;
    *number = rest.toInt(&ok, 10);
    return ok;
}

} // namespace

CMAirableWorker::CMAirableWorker(QHash<QString, QVariant> const& parameters)
    : CMNodesWorker(parameters, QStringLiteral("Airable"))
    , m_formPrefix(addPrefix(TarnAirablePrefixForm()))
    , m_forms(100)
    , m_messagePrefix(addPrefix(TarnAirablePrefixMessage()))
    , m_messages(100)
{
    AIRABLE_TRACE(logger);

    TarnAirableConfig const cloud = platformValue(TarnAirableConfigPath()).airableConfig();
    QString const modelName = platformValue(TarnSystemModelNamePath()).string_();
    QString const version = platformValue(TarnSystemVersionPath()).string_();

    m_config = airable::AirableConfig::Ptr(new airable::AirableConfigImpl);
    m_config->setBaseUrl(cloud.baseUrl());
    m_config->setDeviceName(modelName);
    m_config->setSecret(cloud.secret());
    m_config->setVersion(version);
    m_config->setPageSize(cloud.pageSize());

    // The trees of the cloud's answers are built and released on this thread;
    // threads that start later take the same limit.
    TarnValue const blockCache = platformValue(TarnAirableBlockCacheSizePath());
    bool const sized = blockCache.__contains(TarnValue::IntKey()) && blockCache.int_() >= 0;
    portable::blockpool::setKeptBytesLimit(sized ? std::size_t(blockCache.int_())
                                                 : portable::blockpool::kDefaultKeptBytesLimit);

    // Locale, device id and bitrate arrive only through these watchers, which
    // deliver the current value first.
    m_languageItem = new CMValueItem(this, TarnUILanguagePath());
    CMConnect(m_languageItem, SIGNAL(changed(TarnValue, TarnValue)), this,
              SLOT(on_languageChange(TarnValue, TarnValue)));
    auto* bitrateItem = new CMValueItem(this, TarnAirableStreamBitratePath());
    CMConnect(bitrateItem, SIGNAL(changed(TarnValue, TarnValue)), this,
              SLOT(on_streamBitrateChange(TarnValue, TarnValue)));
    auto* macItem = new CMValueItem(this, TarnSystemPrimaryMacAddressPath());
    CMConnect(macItem, SIGNAL(changed(TarnValue, TarnValue)), this, SLOT(on_primaryMacChange(TarnValue)));

    // These live as long as the process; the worker never deletes them.
    m_connect = new AirableConnect(m_config);
    m_programPlayLogic = new AirableProgramPlayLogic(this, m_connect, nodes(), TarnAirableProgramPlayLogicPath());
    m_oauth = AirableOAuth::create(nodes(), TarnAirableOAuthPath());

    CMConnect(nodes()->subscribe(), SIGNAL(rowsPathRemoved(CMPath)), this, SLOT(on_rowsPathRemoved(CMPath)));
}

CMAirableWorker::~CMAirableWorker()
{
    AIRABLE_TRACE(logger);
    // The login message's nodes must go before the tree that holds them and
    // the OAuth node ends, or the tree's end would release them twice.
    m_oauth->resetLoginMsg();
}

void CMAirableWorker::getRowsRequest(CMGetRowsRequest const& r)
{
    cmHandOver(this, [this, r] { on_getRowsRequest(r); }, Qt::AutoConnection);
}

void CMAirableWorker::setDataRequest(CMSetDataRequest const& r)
{
    cmHandOver(this, [this, r] { on_setDataRequest(r); }, Qt::AutoConnection);
}

void CMAirableWorker::getDataRequest(CMGetDataRequest const& r)
{
    AIRABLE_TRACE(logger, r.path().toEncoded().toStdString());
    CMPath const& path = r.path();

    if (r.roles().size() == 1 && r.roles().first() == TarnRoles::Permission()) {
        LOG4CPLUS_TRACE(logger, "Probe call from event queue, ignoring");
        r.reply().setValue(QList<QVariant>{TarnPermission::Default_()});
        return;
    }

    if (path.startsWith(addPrefix(TarnAirablePrefixForm())) || path.startsWith(addPrefix(TarnAirablePrefixMessage()))
        || path.startsWith(addPrefix(TarnAirablePrefixActionDialog())) || path.startsWith(m_programPlayLogic->path())
        || path.startsWith(TarnAirableOAuthPath())) {
        CMNodesWorker::getDataRequest(r);
        return;
    }

    if (path.startsWith(addPrefix(TarnAirablePrefixContext()))
        || path.startsWith(addPrefix(TarnAirablePrefixPlayContext()))
        || path.startsWith(addPrefix(TarnAirablePrefixContentContext()))
        || path.startsWith(addPrefix(TarnAirablePrefixAction()))) {
        QList<QVariant> values;
        for (auto const& role : r.roles()) {
            if (role == TarnRoles::Title())
                values << QVariant(TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QStringLiteral("Actions"))));
            else if (role == TarnRoles::Type())
                values << QVariant(TarnRolesType::Container());
            else if (role == TarnRoles::ContainerType())
                values << QVariant(TarnRolesContainerType::Context());
            else
                values << QVariant();
        }
        r.reply().setValue(values);
        return;
    }

    cmHandOver(this, [this, r] { on_getDataRequest(r); }, Qt::AutoConnection);
}

void CMAirableWorker::on_getRowsRequest(CMGetRowsRequest r)
{
    AIRABLE_TRACE(logger, r.path().toEncoded().toStdString());
    CMPath const& path = r.path();

    if (r.fromRow() > r.toRow()) {
        LOG4CPLUS_ERROR(logger, "Invalid range requested");
        r.reply().setError(createErrorInvalidArgument(QStringLiteral("fromRow > toRow"),
            QString::number(r.fromRow()) + QLatin1Char(' ') + QString::number(r.toRow())));
        return;
    }
    // The play logic's watchers read its rows as a node's.
    if (path.startsWith(addPrefix(TarnAirablePrefixForm())) || path.startsWith(addPrefix(TarnAirablePrefixMessage()))
        || path.startsWith(addPrefix(TarnAirablePrefixActionDialog())) || path.startsWith(m_programPlayLogic->path())) {
        CMNodesWorker::getRowsRequest(r);
        return;
    }
    if (path.startsWith(addPrefix(TarnAirablePrefixContext()))) {
        QString packed = path.base();
        packed.remove(TarnAirablePrefixContext() + QLatin1Char(':'), Qt::CaseSensitive);
        handleContextMenu(r, readContextActions(QByteArray::fromBase64(packed.toLatin1())), {});
        return;
    }
    if (path.startsWith(addPrefix(TarnAirablePrefixPlayContext()))
        || path.startsWith(addPrefix(TarnAirablePrefixContentContext()))) {
        // The item's own answer gives its actions and its description.
        QString const prefix =
            path.startsWith(addPrefix(TarnAirablePrefixPlayContext())) ? TarnAirablePrefixPlayContext() : TarnAirablePrefixContentContext();
        CMGetRowsRequest const item(addPrefix(path.base().mid(prefix.size() + 1)), r.fromRow(), r.toRow(), -1, r.roles(),
                                    r.reply());
        sendRequest(item, "on_getContentContextDone", nullptr, QVariant());
        return;
    }
    if (path.startsWith(TarnAirableBrowseServicePrefix())) {
        if (m_serviceNodesCreated) {
            CMNodesWorker::getRowsRequest(r);
            return;
        }
        // The service nodes come from the root listing: fetch it first.
        CMGetRowsRequest root(prefixPath(), 0, 0, 0, QStringList());
        root.reply().onSuccess([this, r](TarnRowsRoles const&) { on_getRowsRequest(r); });
        root.reply().onError([r](CMError const& error) { r.reply().setError(error); });
        getRowsRequest(root);
        return;
    }
    prepareAndSendRequest(r, "on_fetchDone", nullptr);
}

void CMAirableWorker::on_getDataRequest(CMGetDataRequest r)
{
    AIRABLE_TRACE(logger, r.path().toEncoded().toStdString());
    if (r.path().startsWith(TarnAirableBrowseServicePrefix())) {
        if (m_serviceNodesCreated) {
            CMNodesWorker::getDataRequest(r);
            return;
        }
        CMGetDataRequest root(prefixPath(), QStringList());
        root.reply().onSuccess([this, r](QList<QVariant> const&) { on_getDataRequest(r); });
        root.reply().onError([r](CMError const& error) { r.reply().setError(error); });
        getDataRequest(root);
        return;
    }
    prepareAndSendRequest(r, "on_fetchDone", nullptr);
}

void CMAirableWorker::on_languageChange(TarnValue newValue, TarnValue)
{
    AIRABLE_TRACE(logger, newValue.string_().toStdString());
    m_connect->resetToken();
    m_config->setLocale(newValue.string_().replace(QLatin1Char('_'), QLatin1Char('-'), Qt::CaseSensitive));
}

void CMAirableWorker::on_streamBitrateChange(TarnValue newValue, TarnValue)
{
    AIRABLE_TRACE(logger);
    m_config->setBitrate(newValue.airableStreamBitrate());
}

void CMAirableWorker::on_primaryMacChange(TarnValue newValue)
{
    AIRABLE_TRACE(logger, newValue.string_().toStdString());
    m_connect->resetToken();
    m_config->setDeviceId(tarnMac2NoColonMac(newValue.string_()));
}

void CMAirableWorker::on_rowsPathRemoved(CMPath path)
{
    LOG4CPLUS_TRACE(logger, "rowsPathRemoved " << path);
    m_notifiedPaths.remove(path);

    int number = 0;
    if (path.startsWith(addPrefix(TarnAirablePrefixForm()))) {
        if (dialogNumber(path, m_formPrefix, &number) && m_forms.remove(number))
            m_freeFormIds.insert(number);
    } else if (path.startsWith(addPrefix(TarnAirablePrefixMessage()))) {
        if (dialogNumber(path, m_messagePrefix, &number) && m_messages.remove(number))
            m_freeMessageIds.insert(number);
        // The end of any message ends the wait for a login.
        m_oauth->resetLoginMsg();
    } else {
        m_paginations.remove(path);
    }
}
