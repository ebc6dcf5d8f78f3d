#include "cmworker.h"
#include "cmroot.h"
#include "../tarnlog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

void CMAbstractWorker::request(CMRequest const& request)
{
    if (request.is<CMGetRowsRequest>())
        getRowsRequest(CMGetRowsRequest(request));
    else if (request.is<CMGetDataRequest>())
        getDataRequest(CMGetDataRequest(request));
    else if (request.is<CMSetDataRequest>())
        setDataRequest(CMSetDataRequest(request));
}

QVariant CMAbstractWorker::getValue(CMPath const& path)
{
    return CMRootWorker::instance()->getValue(path);
}

void CMAbstractWorker::setValue(CMPath const& path, TarnValue const& value, CMReply<QVariant> const& reply)
{
    CMRootWorker::instance()->setValue(path, value, reply);
}

void CMAbstractWorker::invoke(CMPath const& path, TarnHash const& arguments, CMReply<QVariant> const& reply)
{
    CMRootWorker::instance()->invoke(path, arguments, reply);
}

CMError CMAbstractWorker::createErrorInvalidArgument(QString const& text, QString const& detail)
{
    return CMError::invalidArgument(text, detail);
}

CMWorker::CMWorker(QHash<QString, QVariant> const& parameters, QString const& name)
    : m_parameters(parameters)
    , m_name(name)
    , m_prefix(parameters.value(QStringLiteral("prefix"), name.toLower() + QLatin1Char(':')).toString())
{
    cmRegisterMetaTypes();
    setObjectName(name);
}

void CMWorker::ping(CMSetDataRequest const& request)
{
    request.reply().setValue(QVariant(true));
}

void CMWorker::trace()
{
    LOG4CPLUS_INFO(logger, "Worker " << m_name.toStdString() << " at prefix " << m_prefix.toStdString());
}

CMNodesWorker::CMNodesWorker(QHash<QString, QVariant> const& parameters, QString const& name)
    : CMWorker(parameters, name), m_nodes(new CMNodes(this))
{
}

void CMNodesWorker::getRowsRequest(CMGetRowsRequest const& request)
{
    m_nodes->request(request);
}

void CMNodesWorker::getDataRequest(CMGetDataRequest const& request)
{
    m_nodes->request(request);
}

void CMNodesWorker::setDataRequest(CMSetDataRequest const& request)
{
    m_nodes->request(request);
}

void CMNodesWorker::connectChange(CMPath const& path)
{
    m_nodes->subscribe()->addWatcher(path);
}

void CMNodesWorker::disconnectChange(CMPath const& path)
{
    m_nodes->subscribe()->removeWatcher(path);
}

CMAbstractWorker* CMRoot()
{
    return CMRootWorker::instance();
}
