#include "cmroot.h"

#include <QCoreApplication>
#include <QThread>

CMRootWorker::CMRootWorker()
{
    cmRegisterMetaTypes();
    setObjectName(QStringLiteral("root"));
}

CMRootWorker* CMRootWorker::instance()
{
    static CMRootWorker* const root = [] {
        auto* r = new CMRootWorker;
        // Values are announced from the root's thread's point of view; keep it
        // on the application's thread whoever asks first.
        if (QCoreApplication::instance() && r->thread() != QCoreApplication::instance()->thread())
            r->moveToThread(QCoreApplication::instance()->thread());
        return r;
    }();
    return root;
}

void CMRootWorker::addWorker(CMAbstractWorker* worker)
{
    QMutexLocker lock(&mMutex);
    mWorkers.append(worker);
}

void CMRootWorker::addRoute(CMPath const& prefix, CMAbstractWorker* worker)
{
    QMutexLocker lock(&mMutex);
    mRoutes.append({prefix, worker});
}

void CMRootWorker::removeWorker(CMAbstractWorker* worker)
{
    QMutexLocker lock(&mMutex);
    mWorkers.removeAll(worker);
    for (int i = mRoutes.size() - 1; i >= 0; --i)
        if (mRoutes[i].second == worker || mRoutes[i].second.isNull())
            mRoutes.removeAt(i);
}

CMAbstractWorker* CMRootWorker::workerFor(CMPath const& path) const
{
    QMutexLocker lock(&mMutex);
    for (auto const& w : mWorkers) {
        auto* worker = qobject_cast<CMWorker*>(w.data());
        if (worker && !path.prefix().isEmpty() && path.prefix() == worker->prefixText())
            return worker;
    }
    for (auto const& route : mRoutes)
        if (route.second && path.startsWith(route.first))
            return route.second.data();
    for (auto const& w : mWorkers) {
        auto* worker = qobject_cast<CMNodesWorker*>(w.data());
        if (worker && worker->nodes()->contains(path))
            return worker;
    }
    return nullptr;
}

void CMRootWorker::route(CMRequest const& request)
{
    if (CMAbstractWorker* worker = workerFor(request.path())) {
        worker->request(request);
        return;
    }
    request.reply().setError(CMError(QStringLiteral("notFound"),
        TrString(QStringLiteral("No worker for path %1").arg(request.path().toEncoded()))));
}

void CMRootWorker::getRowsRequest(CMGetRowsRequest const& request)
{
    route(request);
}

void CMRootWorker::getDataRequest(CMGetDataRequest const& request)
{
    if (!workerFor(request.path()) && hasValue(request.path())) {
        TarnValue const value = TarnValue::fromVariant(getValue(request.path()));
        QList<QVariant> values;
        for (auto const& role : request.roles())
            values << (role == TarnRoles::Value() ? value.__variant() : QVariant());
        request.reply().setValue(values);
        return;
    }
    route(request);
}

void CMRootWorker::setDataRequest(CMSetDataRequest const& request)
{
    if (!workerFor(request.path()) && request.role() == TarnRoles::Value()) {
        bool hasAction;
        {
            QMutexLocker lock(&mMutex);
            hasAction = mActions.contains(request.path());
        }
        if (hasAction)
            invoke(request.path(), TarnValue::fromVariant(request.value()), request.reply());
        else
            setValue(request.path(), TarnValue::fromVariant(request.value()), request.reply());
        return;
    }
    route(request);
}

QVariant CMRootWorker::getValue(CMPath const& path)
{
    QMutexLocker lock(&mMutex);
    auto it = mValues.constFind(path);
    return it == mValues.constEnd() ? QVariant() : it->__variant();
}

void CMRootWorker::setValue(CMPath const& path, TarnValue const& value, CMReply<QVariant> const& reply)
{
    putValue(path, value);
    if (!reply.isNull())
        reply.setValue(QVariant());
}

void CMRootWorker::putValue(CMPath const& path, TarnValue const& value)
{
    TarnValue old;
    {
        QMutexLocker lock(&mMutex);
        old = mValues.value(path);
        mValues.insert(path, value);
    }
    if (old != value)
        emit valueChanged(path, value, old);
}

bool CMRootWorker::hasValue(CMPath const& path) const
{
    QMutexLocker lock(&mMutex);
    return mValues.contains(path);
}

void CMRootWorker::setAction(CMPath const& path, Action action)
{
    QMutexLocker lock(&mMutex);
    if (action)
        mActions.insert(path, std::move(action));
    else
        mActions.remove(path);
}

void CMRootWorker::invoke(CMPath const& path, TarnHash const& arguments, CMReply<QVariant> const& reply)
{
    Action action;
    {
        QMutexLocker lock(&mMutex);
        action = mActions.value(path);
    }
    if (action) {
        action(arguments, reply);
        return;
    }
    if (!reply.isNull())
        reply.setError(CMError(QStringLiteral("notFound"),
            TrString(QStringLiteral("No action at path %1").arg(path.toEncoded()))));
}

bool CMRootWorker::connectChange(CMPath const& path)
{
    auto* worker = qobject_cast<CMNodesWorker*>(workerFor(path));
    if (!worker)
        return false;
    worker->connectChange(path);
    return true;
}

void CMRootWorker::disconnectChange(CMPath const& path)
{
    if (auto* worker = qobject_cast<CMNodesWorker*>(workerFor(path)))
        worker->disconnectChange(path);
}

CMRowsWatch::CMRowsWatch(CMPath const& path, QObject* parent) : QObject(parent), mPath(path)
{
    auto* root = CMRootWorker::instance();
    auto* worker = qobject_cast<CMNodesWorker*>(root->workerFor(path));
    mValid = worker != nullptr;
    if (!mValid)
        return;
    connect(worker->nodes()->subscribe(), &CMSubscribe::rowsChanged, this,
            [this](CMPath const& p, QString const& type, int from, int to) {
                if (p == mPath)
                    emit changed(type, from, to);
            });
    worker->connectChange(path);
}

CMRowsWatch::~CMRowsWatch()
{
    if (mValid)
        CMRootWorker::instance()->disconnectChange(mPath);
}
