#pragma once

#include "cmrequest.h"
#include "cmsubscribe.h"

#include <QHash>
#include <QMutex>
#include <QObject>
#include <QSet>

class CMNode;

// A worker's tree of real nodes. Nodes are used only on the thread the tree
// lives on: a request from another thread is handed over, and a path whose
// node is gone by then gets an error instead of silence.
class CMNodes : public QObject
{
    Q_OBJECT
public:
    explicit CMNodes(QObject* parent = nullptr);
    ~CMNodes() override;

    CMSubscribe* subscribe() const { return mSubscribe; }

    // True when a node answers this path; safe from any thread.
    bool contains(CMPath const& path) const;
    // The node at path, for use on the tree's thread only.
    CMNode* node(CMPath const& path) const;
    int count() const;

    // Answers the request from the node at its path, on the tree's thread.
    void request(CMRequest const& request);

    // Tells the watchers of every list that shows the node at path as a row
    // that this row is to be read again (a reset of that one row).
    void rowChanged(CMPath const& path);

    static CMError noNodeError(CMPath const& path);

signals:
    // A dialog at path was closed, and its client is to go to target (an
    // empty target: nowhere in particular). Its watchers have had the close
    // change on path as well.
    void rowsClosed(CMPath const& path, CMPath const& target);

private:
    friend class CMNode;
    void add(CMPath const& path, CMNode* node);
    void remove(CMPath const& path, CMNode* node);
    // A node on its way out through deleteLater: out of the registry, but
    // still the tree's to free should the tree end first.
    void release(CMNode* node);
    void forget(CMNode* node);
    void dispatch(CMRequest const& request);

    mutable QMutex mMutex;
    QHash<CMPath, CMNode*> mNodes;
    QSet<CMNode*> mReleased;
    CMSubscribe* mSubscribe;
};
