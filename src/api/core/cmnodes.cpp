#include "cmnodes.h"

#include "cmhandover.h"
#include "cmnode.h"

#include <QThread>
#include <algorithm>

CMNodes::CMNodes(QObject* parent) : QObject(parent), mSubscribe(new CMSubscribe(this)) {}

namespace {

QList<CMNode*> distinct(QList<CMNode*> nodes)
{
    std::sort(nodes.begin(), nodes.end());
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    return nodes;
}

} // namespace

CMNodes::~CMNodes()
{
    // Nodes still here are owned by the tree, and so are released ones whose
    // deferred deletion has not run: their thread may never serve events
    // again. Detach them first so their destructors don't come back into a
    // half-destroyed registry.
    QList<CMNode*> nodes;
    {
        QMutexLocker lock(&mMutex);
        nodes = mNodes.values() + mReleased.values();
        mNodes.clear();
        mReleased.clear();
    }
    for (CMNode* n : distinct(nodes)) {
        n->mNodes = nullptr;
        delete n;
    }
}

bool CMNodes::contains(CMPath const& path) const
{
    QMutexLocker lock(&mMutex);
    return mNodes.contains(path) || (!path.params().isEmpty() && mNodes.contains(path.withoutParams()));
}

CMNode* CMNodes::node(CMPath const& path) const
{
    QMutexLocker lock(&mMutex);
    // Parameters are a request's arguments to the node at the plain path.
    if (CMNode* exact = mNodes.value(path))
        return exact;
    return path.params().isEmpty() ? nullptr : mNodes.value(path.withoutParams());
}

int CMNodes::count() const
{
    QMutexLocker lock(&mMutex);
    return mNodes.size();
}

void CMNodes::add(CMPath const& path, CMNode* node)
{
    QMutexLocker lock(&mMutex);
    mNodes.insert(path, node);
}

void CMNodes::remove(CMPath const& path, CMNode* node)
{
    QMutexLocker lock(&mMutex);
    auto it = mNodes.find(path);
    if (it != mNodes.end() && it.value() == node)
        mNodes.erase(it);
}

void CMNodes::release(CMNode* node)
{
    QMutexLocker lock(&mMutex);
    for (auto const& p : node->mPaths) {
        auto it = mNodes.find(p);
        if (it != mNodes.end() && it.value() == node)
            mNodes.erase(it);
    }
    mReleased.insert(node);
}

void CMNodes::forget(CMNode* node)
{
    QMutexLocker lock(&mMutex);
    mReleased.remove(node);
}

void CMNodes::rowChanged(CMPath const& path)
{
    QList<CMNode*> nodes;
    {
        QMutexLocker lock(&mMutex);
        nodes = mNodes.values();
    }
    for (CMNode* n : distinct(nodes)) {
        auto const* list = qobject_cast<CMListRowsNode const*>(n);
        if (!list)
            continue;
        for (int row : list->rowsShowing(path))
            mSubscribe->changed(list->path(), CMSubscribe::RowsChangeReset(), row, row);
    }
}

CMError CMNodes::noNodeError(CMPath const& path)
{
    CMError e(QStringLiteral("notFound"), TrString(QStringLiteral("No node at path %1").arg(path.toEncoded())));
    e.insert(CMError::Detail(), path.toEncoded());
    return e;
}

void CMNodes::request(CMRequest const& request)
{
    if (thread() == QThread::currentThread())
        dispatch(request);
    else
        cmHandOver(this, [this, request] { dispatch(request); });
}

void CMNodes::dispatch(CMRequest const& request)
{
    CMNode* n = node(request.path());
    if (!n) {
        request.reply().setError(noNodeError(request.path()));
        return;
    }
    n->request(request);
}
