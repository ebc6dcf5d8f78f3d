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
    if (!mNodes)
        return;
    if (mReleased) {
        mNodes->forget(this);
        return;
    }
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
    if (mNodes && !mReleased)
        mNodes->add(path, this);
}

void CMNode::removePath(CMPath const& path)
{
    mPaths.removeAll(path);
    if (mNodes && !mReleased)
        mNodes->remove(path, this);
}

void CMNode::deleteLater()
{
    if (mNodes && !mReleased) {
        mReleased = true;
        mNodes->release(this);
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

QString CMUINode::displayName() const
{
    if (!mTitle.isEmpty())
        return mTitle.toString();
    if (!mId.isEmpty())
        return mId;
    return path().toEncoded();
}

void CMContainerNode::sendCloseEvent(CMPath const& target)
{
    mClosed = true;
    mCloseTarget = target;
    if (!nodes())
        return;
    nodes()->subscribe()->changed(path(), CMSubscribe::RowsChangeClose(), -1, -1);
    emit nodes()->rowsClosed(path(), target);
}

bool CMContainerNode::redirectClosed(CMGetRowsRequest const& request) const
{
    // A target of the container itself would send the client round in a
    // circle; such a close only closes the view.
    if (!mClosed || mCloseTarget.isEmpty() || mCloseTarget == request.path())
        return false;
    TarnRowsRoles answer;
    answer.setRowsRedirect(mCloseTarget);
    request.reply().setValue(answer);
    return true;
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

TarnRoles CMListRowsNode::rowRoles(int i) const
{
    if (auto const* p = std::get_if<CMPath>(&mRows.at(i))) {
        CMNode const* n = nodes() ? nodes()->node(*p) : nullptr;
        return n ? n->roles() : TarnRoles().setPath(*p);
    }
    return std::get<TarnRoles>(mRows.at(i));
}

QVector<int> CMListRowsNode::rowsShowing(CMPath const& path) const
{
    QVector<int> rows;
    for (int i = 0; i < mRows.size(); ++i) {
        auto const* p = std::get_if<CMPath>(&mRows[i]);
        if (p && *p == path)
            rows << i;
    }
    return rows;
}

void CMListRowsNode::getRowsRequest(CMGetRowsRequest const& request)
{
    if (redirectClosed(request))
        return;
    int const count = mRows.size();
    int const from = std::max(0, request.fromRow());
    int const to = std::min(count - 1, request.toRow());
    QVariantList rows;
    for (int i = from; i <= to; ++i)
        rows << QVariant(valuesOf(rowRoles(i), request.roles()));
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

CMValueNode::CMValueNode(CMPath const& path, QMutex* mutex)
    : CMUINode(path), mValueMutex(mutex ? mutex : &mOwnValueMutex)
{
}

CMValueNode* CMValueNode::create(CMNodes* nodes, CMPath const& path, QMutex* mutex)
{
    return place(nodes, new CMValueNode(path, mutex));
}

TarnValue CMValueNode::value() const
{
    QMutexLocker lock(mValueMutex);
    return mValue;
}

void CMValueNode::setValue(TarnValue const& value)
{
    {
        QMutexLocker lock(mValueMutex);
        if (mValue == value)
            return;
        mValue = value;
    }
    emit valueChanged(value);
    if (nodes())
        nodes()->rowChanged(path());
}

TarnEdit CMValueNode::editWithOptions() const
{
    TarnEdit edit = mEdit;
    auto const* options = nodes() && !edit.enumPath().isEmpty()
        ? qobject_cast<CMListRowsNode const*>(nodes()->node(edit.enumPath()))
        : nullptr;
    if (!options)
        return edit;
    QStringList values;
    for (int i = 0; i < options->rowsCount(); ++i) {
        TarnRoles const row = options->rowRoles(i);
        if (row.__contains(TarnRoles::Value()))
            values << TarnValue::fromVariant(row.value(TarnRoles::Value())).string_();
    }
    return edit.setEnumValues(values);
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
    TarnValue const proposed = TarnValue::fromVariant(request.value());
    QString const broken = CMEdit::violation(proposed, editWithOptions());
    if (!broken.isEmpty()) {
        request.reply().setError(CMError::invalidArgument(QStringLiteral("\"%1\" %2").arg(displayName(), broken),
                                                          TarnJson::serialize(request.value())));
        return;
    }
    setValue(proposed);
    request.reply().setValue(QVariant());
}

TarnRoles CMValueNode::roles() const
{
    TarnRoles r = CMUINode::roles();
    r.setType(TarnRolesType::Value());
    r.setValue(value());
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
