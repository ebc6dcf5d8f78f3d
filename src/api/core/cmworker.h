#pragma once

#include "cmnodes.h"
#include "cmrequest.h"
#include "tarnvalue.h"

#include <QHash>
#include <QObject>
#include <QVariant>

// The framework's view of a worker: it takes requests and reaches the values
// of other workers through the root.
class CMAbstractWorker : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    // The framework's entry: dispatches to the three request operations.
    virtual void request(CMRequest const& request);
    virtual void getRowsRequest(CMGetRowsRequest const& request) = 0;
    virtual void getDataRequest(CMGetDataRequest const& request) = 0;
    virtual void setDataRequest(CMSetDataRequest const& request) = 0;

    // Values of the platform, by path; synchronous and callable from any
    // thread, a worker's constructor included.
    virtual QVariant getValue(CMPath const& path);
    virtual void setValue(CMPath const& path, TarnValue const& value, CMReply<QVariant> const& reply);
    virtual void invoke(CMPath const& path, TarnHash const& arguments, CMReply<QVariant> const& reply);

    static CMError createErrorInvalidArgument(QString const& text, QString const& detail);
};

// A worker with a name and a prefix that roots its paths.
class CMWorker : public CMAbstractWorker
{
    Q_OBJECT
public:
    // The prefix is the "prefix" parameter, or the lower-case name and ':'.
    CMWorker(QHash<QString, QVariant> const& parameters, QString const& name);

    QString const& name() const { return m_name; }
    QString const& prefixText() const { return m_prefix; }
    QHash<QString, QVariant> const& parameters() const { return m_parameters; }
    CMPath addPrefix(QString const& text) const { return CMPath(m_prefix, text); }
    CMPath prefixPath() const { return CMPath(m_prefix, QString()); }

    // Answers that the worker is alive.
    virtual void ping(CMSetDataRequest const& request);
    virtual void trace();

protected:
    QHash<QString, QVariant> m_parameters;
    QString m_name;
    QString m_prefix;
};

// A worker whose real nodes live in its own tree.
class CMNodesWorker : public CMWorker
{
    Q_OBJECT
public:
    CMNodesWorker(QHash<QString, QVariant> const& parameters, QString const& name);

    CMNodes* nodes() const { return m_nodes; }

    void getRowsRequest(CMGetRowsRequest const& request) override;
    void getDataRequest(CMGetDataRequest const& request) override;
    void setDataRequest(CMSetDataRequest const& request) override;

    // A client starts or stops watching the rows of path.
    virtual void connectChange(CMPath const& path);
    virtual void disconnectChange(CMPath const& path);

private:
    CMNodes* m_nodes;
};

// The platform's root worker: values, actions and the routing of requests.
CMAbstractWorker* CMRoot();
