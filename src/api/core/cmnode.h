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
// tree at once and frees the object on its thread, or with the tree should
// the tree end first.
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
    bool mReleased = false;
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
    TrString const& description() const { return mDescription; }
    void setLongDescription(TrString const& d) { mLongDescription = d; }
    TrString const& longDescription() const { return mLongDescription; }
    TarnRoles roles() const override;

protected:
    // How errors name the node to a user: its title, else its id, else its path.
    QString displayName() const;

private:
    QString mId;
    TrString mTitle;
    TrString mDescription;
    TrString mLongDescription;
};

// Base of nodes that list rows. A container shown as a dialog is closed by
// sendCloseEvent: its watchers get the close change, the tree announces
// where the client goes next, and from then on a rows request on the
// container is sent there.
class CMContainerNode : public CMUINode
{
    Q_OBJECT
public:
    using CMUINode::CMUINode;
    void setContainerType(TarnRolesContainerType::Enum const& type) { mContainerType = type; }
    // Closes the container and sends its client to target; with an empty
    // target the client only closes the view.
    void sendCloseEvent(CMPath const& target);
    bool isClosed() const { return mClosed; }
    CMPath const& closeTarget() const { return mCloseTarget; }
    TarnRoles roles() const override;

protected:
    // Answers a rows request of a closed container with a redirect to where
    // its client was sent; false when the request is the container's to answer.
    bool redirectClosed(CMGetRowsRequest const& request) const;

private:
    QVariant mContainerType;
    bool mClosed = false;
    CMPath mCloseTarget;
};

// A fixed list of rows: other nodes by path, shown with the roles the node
// has when the rows are asked for, or plain rows. A path no node answers
// shows as a row with the path alone.
class CMListRowsNode : public CMContainerNode
{
    Q_OBJECT
public:
    using CMContainerNode::CMContainerNode;
    static CMListRowsNode* create(CMNodes* nodes, CMPath const& path);

    void rowsAppend(CMPath const& path) { mRows.append(path); }
    void rowsAppend(TarnRoles const& roles) { mRows.append(roles); }
    int rowsCount() const { return mRows.size(); }
    // The roles of row i as a client sees them now.
    TarnRoles rowRoles(int i) const;
    // The rows that show the node at path.
    QVector<int> rowsShowing(CMPath const& path) const;
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

// An editable value with its rules. A set-data of the Value role is checked
// against the edit rules (a select's options are read from the rows at its
// enumeration path at that moment) and stored, or refused with an error that
// names the field and the rule. A change, by request or by setValue, reaches
// valueChanged and the watchers of the lists that show the node.
// The value is guarded by the mutex given at creation, or by one of its own,
// so that value() may be read from any thread.
class CMValueNode : public CMUINode
{
    Q_OBJECT
public:
    explicit CMValueNode(CMPath const& path, QMutex* mutex = nullptr);
    static CMValueNode* create(CMNodes* nodes, CMPath const& path, QMutex* mutex = nullptr);

    TarnValue value() const;
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
    // The edit with the values its enumeration lists now, when it has one.
    TarnEdit editWithOptions() const;

    // Apart from the node's mutex(), so that a caller holding that one may
    // still read the value.
    mutable QMutex mOwnValueMutex;
    QMutex* mValueMutex;
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
