#pragma once

#include "cmrequest.h"
#include "cmsubscribe.h"

#include <QHash>
#include <QMutex>
#include <QObject>

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

    static CMError noNodeError(CMPath const& path);

private:
    friend class CMNode;
    void add(CMPath const& path, CMNode* node);
    void remove(CMPath const& path, CMNode* node);
    void dispatch(CMRequest const& request);

    mutable QMutex mMutex;
    QHash<CMPath, CMNode*> mNodes;
    CMSubscribe* mSubscribe;
};
