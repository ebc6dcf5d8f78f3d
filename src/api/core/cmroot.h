#pragma once

#include "cmworker.h"

#include <QHash>
#include <QMutex>
#include <QPointer>
#include <QVector>
#include <functional>

// The platform's root: it owns the value store, the actions that other
// parts offer by path, and the routing of client requests to the worker
// that owns a path (by its prefix, by a route, or by a node in its tree).
class CMRootWorker : public CMAbstractWorker
{
    Q_OBJECT
public:
    using Action = std::function<void(TarnHash const& arguments, CMReply<QVariant> const& reply)>;

    static CMRootWorker* instance();

    void addWorker(CMAbstractWorker* worker);
    // Paths outside the worker's prefix that belong to it nonetheless, such
    // as platform paths under which it makes nodes later.
    void addRoute(CMPath const& prefix, CMAbstractWorker* worker);
    void removeWorker(CMAbstractWorker* worker);
    // The worker that owns path, or null.
    CMAbstractWorker* workerFor(CMPath const& path) const;

    void getRowsRequest(CMGetRowsRequest const& request) override;
    void getDataRequest(CMGetDataRequest const& request) override;
    void setDataRequest(CMSetDataRequest const& request) override;

    QVariant getValue(CMPath const& path) override;
    void setValue(CMPath const& path, TarnValue const& value, CMReply<QVariant> const& reply) override;
    void invoke(CMPath const& path, TarnHash const& arguments, CMReply<QVariant> const& reply) override;

    // Sets a stored value without a reply (the host's configuration).
    void putValue(CMPath const& path, TarnValue const& value);
    bool hasValue(CMPath const& path) const;
    void setAction(CMPath const& path, Action action);

    // Starts and stops a client's watch of rows at path; false when no
    // worker owns the path.
    bool connectChange(CMPath const& path);
    void disconnectChange(CMPath const& path);

signals:
    void valueChanged(CMPath const& path, TarnValue const& newValue, TarnValue const& oldValue);

private:
    CMRootWorker();
    void route(CMRequest const& request);

    mutable QMutex mMutex;
    QVector<QPointer<CMAbstractWorker>> mWorkers;
    QVector<QPair<CMPath, QPointer<CMAbstractWorker>>> mRoutes;
    QHash<CMPath, TarnValue> mValues;
    QHash<CMPath, Action> mActions;
};

// Watches the rows of one path for a client: changed() reports the changes
// that the owner of the path announces. The watch ends with the object.
class CMRowsWatch : public QObject
{
    Q_OBJECT
public:
    CMRowsWatch(CMPath const& path, QObject* parent = nullptr);
    ~CMRowsWatch() override;
    bool isValid() const { return mValid; }

signals:
    void changed(QString const& type, int from, int to);

private:
    CMPath mPath;
    bool mValid;
};
