#include "cmnode.h"

#include "tarnrowsroles.h"

#include <QMetaMethod>
#include <algorithm>

namespace {

QList<QVariant> valuesOf(TarnRoles const& roles, QStringList const& names)
{
    QList<QVariant> values;
    values.reserve(names.size());
    for (auto const& name : names)
        values << roles.value(name);
    return values;
}

CMError readOnlyError(CMPath const& path)
{
    return CMError(QStringLiteral("readOnly"), TrString(QStringLiteral("Path %1 is read-only").arg(path.toEncoded())));
}

template <typename T>
T* place(CMNodes* nodes, T* node)
{
    node->setNodes(nodes);
    return node;
}

} // namespace

CMNode::CMNode(CMPath const& path) : mPath(path) {}

CMNode::~CMNode()
{
    if (mNodes)
        for (auto const& p : mPaths)
            mNodes->remove(p, this);
}

void CMNode::setNodes(CMNodes* nodes)
{
    mNodes = nodes;
    if (!mPaths.contains(mPath))
        mPaths.prepend(mPath);
    for (auto const& p : mPaths)
        mNodes->add(p, this);
}

void CMNode::addPath(CMPath const& path)
{
    if (mPaths.contains(path))
        return;
    mPaths.append(path);
    if (mNodes)
        mNodes->add(path, this);
}

void CMNode::removePath(CMPath const& path)
{
    mPaths.removeAll(path);
    if (mNodes)
        mNodes->remove(path, this);
}

void CMNode::deleteLater()
{
    if (mNodes) {
        for (auto const& p : mPaths)
            mNodes->remove(p, this);
        mNodes = nullptr;
    }
    QObject::deleteLater();
}

void CMNode::request(CMRequest const& request)
{
    emit used();
    if (request.is<CMGetRowsRequest>())
        getRowsRequest(CMGetRowsRequest(request));
    else if (request.is<CMGetDataRequest>())
        getDataRequest(CMGetDataRequest(request));
    else if (request.is<CMSetDataRequest>())
        setDataRequest(CMSetDataRequest(request));
}

void CMNode::getRowsRequest(CMGetRowsRequest const& request)
{
    request.reply().setError(
        CMError(QStringLiteral("noRows"), TrString(QStringLiteral("Path %1 has no rows").arg(request.path().toEncoded()))));
}

void CMNode::getDataRequest(CMGetDataRequest const& request)
{
    request.reply().setValue(valuesOf(roles(), request.roles()));
}

void CMNode::setDataRequest(CMSetDataRequest const& request)
{
    request.reply().setError(readOnlyError(request.path()));
}

TarnRoles CMNode::roles() const
{
    TarnRoles r;
    r.setPath(mPath);
    return r;
}

CMUINode* CMUINode::create(CMNodes* nodes, CMPath const& path)
{
    return place(nodes, new CMUINode(path));
}

TarnRoles CMUINode::roles() const
{
    TarnRoles r = CMNode::roles();
    r.setType(TarnRolesType::Text());
    if (!mId.isEmpty())
        r.setId(mId);
    if (!mTitle.isEmpty())
        r.setTitle(mTitle);
    if (!mDescription.isEmpty())
        r.setDescription(mDescription);
    if (!mLongDescription.isEmpty())
        r.setLongDescription(mLongDescription);
    return r;
}

void CMContainerNode::sendCloseEvent(CMPath const& path)
{
    if (nodes())
        nodes()->subscribe()->changed(path, CMSubscribe::RowsChangeClose(), -1, -1);
}

TarnRoles CMContainerNode::roles() const
{
    TarnRoles r = CMUINode::roles();
    r.setType(TarnRolesType::Container());
    if (mContainerType.isValid())
        r.setContainerType(mContainerType);
    return r;
}

CMListRowsNode* CMListRowsNode::create(CMNodes* nodes, CMPath const& path)
{
    return place(nodes, new CMListRowsNode(path));
}

void CMListRowsNode::getRowsRequest(CMGetRowsRequest const& request)
{
    int const count = mRows.size();
    int const from = std::max(0, request.fromRow());
    int const to = std::min(count - 1, request.toRow());
    QVariantList rows;
    for (int i = from; i <= to; ++i) {
        TarnRoles roles;
        if (auto const* p = std::get_if<CMPath>(&mRows[i])) {
            CMNode const* n = nodes() ? nodes()->node(*p) : nullptr;
            roles = n ? n->roles() : TarnRoles().setPath(*p);
        } else {
            roles = std::get<TarnRoles>(mRows[i]);
        }
        rows << QVariant(valuesOf(roles, request.roles()));
    }
    TarnRowsRoles answer;
    answer.setRows(rows).setRowsCount(count).setRoles(roles());
    request.reply().setValue(answer);
}

CMRedirectRowsNode* CMRedirectRowsNode::create(CMNodes* nodes, CMPath const& path, CMPath const& target)
{
    return place(nodes, new CMRedirectRowsNode(path, target));
}

void CMRedirectRowsNode::getRowsRequest(CMGetRowsRequest const& request)
{
    TarnRowsRoles answer;
    answer.setRowsRedirect(mTarget);
    request.reply().setValue(answer);
}

CMValueNode* CMValueNode::create(CMNodes* nodes, CMPath const& path, QMutex*)
{
    return place(nodes, new CMValueNode(path));
}

void CMValueNode::setValue(TarnValue const& value)
{
    mValue = value;
    emit valueChanged(mValue);
}

void CMValueNode::setDataRequest(CMSetDataRequest const& request)
{
    if (request.role() != TarnRoles::Value()) {
        CMNode::setDataRequest(request);
        return;
    }
    if (mReadOnly) {
        request.reply().setError(readOnlyError(request.path()));
        return;
    }
    TarnValue const accepted =
        CMEdit::validate(mValue, TarnValue::fromVariant(request.value()), mEdit, request.path());
    if (accepted.isEmpty()) {
        request.reply().setError(CMError::invalidArgument(
            QStringLiteral("Value breaks the edit rules of %1").arg(request.path().toEncoded()),
            TarnJson::serialize(request.value())));
        return;
    }
    setValue(accepted);
    request.reply().setValue(QVariant());
}

TarnRoles CMValueNode::roles() const
{
    TarnRoles r = CMUINode::roles();
    r.setType(TarnRolesType::Value());
    r.setValue(mValue);
    if (!mEdit.isEmpty())
        r.insert(TarnRoles::Edit(), mEdit.__variant());
    r.insert(TarnRoles::ReadOnly(), mReadOnly);
    return r;
}

CMActivateNode* CMActivateNode::create(CMNodes* nodes, CMPath const& path)
{
    return place(nodes, new CMActivateNode(path));
}

void CMActivateNode::setDataRequest(CMSetDataRequest const& request)
{
    if (request.role() != TarnRoles::Activate()) {
        CMNode::setDataRequest(request);
        return;
    }
    if (isSignalConnected(QMetaMethod::fromSignal(&CMActivateNode::activated)))
        emit activated(request);
    else
        request.reply().setValue(QVariant());
}

TarnRoles CMActivateNode::roles() const
{
    TarnRoles r = CMUINode::roles();
    r.setType(TarnRolesType::Action());
    return r;
}

CMUnusedNodeTimer::CMUnusedNodeTimer(CMNode* node, int milliseconds) : QObject(node), mNode(node)
{
    mTimer.setSingleShot(true);
    mTimer.setInterval(milliseconds);
    connect(&mTimer, &QTimer::timeout, this, &CMUnusedNodeTimer::expire);
    connect(node, &CMNode::used, &mTimer, qOverload<>(&QTimer::start));
    mTimer.start();
}

void CMUnusedNodeTimer::expire()
{
    if (mNode->nodes() && mNode->nodes()->subscribe()->watcherCount(mNode->path()) > 0) {
        mTimer.start();
        return;
    }
    mNode->deleteLater();
}
