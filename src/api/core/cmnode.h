#pragma once

#include "cmnodes.h"
#include "tarnedit.h"
#include "tarnroles.h"
#include "tarnvalue.h"

#include <QMutex>
#include <QObject>
#include <QTimer>
#include <QVector>
#include <variant>

// A node of the tree: it answers requests on its path. Nodes live in the
// tree that created them (the tree deletes what is left at its end); a node
// released early goes through deleteLater(), which takes its path out of the
// tree at once and frees the object on its thread.
class CMNode : public QObject
{
    Q_OBJECT
public:
    explicit CMNode(CMPath const& path);
    ~CMNode() override;

    void setNodes(CMNodes* nodes);
    CMNodes* nodes() const { return mNodes; }
    CMPath const& path() const { return mPath; }
    QMutex* mutex() const { return &mMutex; }
    void deleteLater();

    // Further paths the node answers besides its own.
    void rowsPathAdd(CMPath const& path) { addPath(path); }
    void rowsPathRemove(CMPath const& path) { removePath(path); }
    void dataPathAdd(CMPath const& path) { addPath(path); }
    void dataPathRemove(CMPath const& path) { removePath(path); }
    void valuePathAdd(CMPath const& path) { addPath(path); }
    void valuePathRemove(CMPath const& path) { removePath(path); }

    virtual void request(CMRequest const& request);
    virtual void getRowsRequest(CMGetRowsRequest const& request);
    virtual void getDataRequest(CMGetDataRequest const& request);
    virtual void setDataRequest(CMSetDataRequest const& request);
    // The node's roles as a row of a listing, and as answers to data requests.
    virtual TarnRoles roles() const;

signals:
    void used();

private:
    friend class CMNodes;
    void addPath(CMPath const& path);
    void removePath(CMPath const& path);

    CMPath mPath;
    CMNodes* mNodes = nullptr;
    QVector<CMPath> mPaths;
    mutable QMutex mMutex;
};

// A node with texts for a user interface.
class CMUINode : public CMNode
{
    Q_OBJECT
public:
    using CMNode::CMNode;
    static CMUINode* create(CMNodes* nodes, CMPath const& path);

    void setId(QString const& id) { mId = id; }
    QString const& id() const { return mId; }
    void setTitle(TrString const& t) { mTitle = t; }
    TrString const& title() const { return mTitle; }
    void setDescription(TrString const& d) { mDescription = d; }
    void setLongDescription(TrString const& d) { mLongDescription = d; }
    TarnRoles roles() const override;

private:
    QString mId;
    TrString mTitle;
    TrString mDescription;
    TrString mLongDescription;
};

// Base of nodes that list rows.
class CMContainerNode : public CMUINode
{
    Q_OBJECT
public:
    using CMUINode::CMUINode;
    void setContainerType(TarnRolesContainerType::Enum const& type) { mContainerType = type; }
    // Tells the watchers of path that the view on it is to be closed.
    void sendCloseEvent(CMPath const& path);
    TarnRoles roles() const override;

private:
    QVariant mContainerType;
};

// A fixed list of rows: other nodes by path, or plain rows.
class CMListRowsNode : public CMContainerNode
{
    Q_OBJECT
public:
    using CMContainerNode::CMContainerNode;
    static CMListRowsNode* create(CMNodes* nodes, CMPath const& path);

    void rowsAppend(CMPath const& path) { mRows.append(path); }
    void rowsAppend(TarnRoles const& roles) { mRows.append(roles); }
    int rowsCount() const { return mRows.size(); }
    void getRowsRequest(CMGetRowsRequest const& request) override;

private:
    QVector<std::variant<CMPath, TarnRoles>> mRows;
};

// Answers rows by sending the client to another path.
class CMRedirectRowsNode : public CMNode
{
    Q_OBJECT
public:
    CMRedirectRowsNode(CMPath const& path, CMPath const& target) : CMNode(path), mTarget(target) {}
    static CMRedirectRowsNode* create(CMNodes* nodes, CMPath const& path, CMPath const& target);
    CMPath const& target() const { return mTarget; }
    void getRowsRequest(CMGetRowsRequest const& request) override;

private:
    CMPath mTarget;
};

// An editable value with its rules.
class CMValueNode : public CMUINode
{
    Q_OBJECT
public:
    using CMUINode::CMUINode;
    static CMValueNode* create(CMNodes* nodes, CMPath const& path, QMutex* mutex = nullptr);

    TarnValue value() const { return mValue; }
    void setValue(TarnValue const& value);
    TarnEdit edit() const { return mEdit; }
    void setEdit(TarnEdit const& edit) { mEdit = edit; }
    void setReadOnly(bool readOnly) { mReadOnly = readOnly; }
    bool readOnly() const { return mReadOnly; }

    void setDataRequest(CMSetDataRequest const& request) override;
    TarnRoles roles() const override;

signals:
    void valueChanged(TarnValue const& value);

private:
    TarnValue mValue;
    TarnEdit mEdit;
    bool mReadOnly = false;
};

// A button: takes the Activate role. Whoever listens to activated answers
// the request; with nobody listening it is answered with an empty value.
class CMActivateNode : public CMUINode
{
    Q_OBJECT
public:
    using CMUINode::CMUINode;
    static CMActivateNode* create(CMNodes* nodes, CMPath const& path);
    void setDataRequest(CMSetDataRequest const& request) override;
    TarnRoles roles() const override;

signals:
    void activated(CMSetDataRequest const& request);
};

// Removes its node when no client has used it for the given milliseconds.
// A node whose rows somebody watches counts as used.
class CMUnusedNodeTimer : public QObject
{
    Q_OBJECT
public:
    CMUnusedNodeTimer(CMNode* node, int milliseconds);

private:
    void expire();

    CMNode* mNode;
    QTimer mTimer;
};
