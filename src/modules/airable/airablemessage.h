#pragma once

#include "MessageItem.h"
#include "cmnode.h"

#include <QSharedPointer>
#include <QVector>

class CMNodesWorker;

// A message of the cloud as a dialog: its text as the first row, then its
// buttons, each with the link a press follows. Login on a service's page
// and a sign-up page are offered as plain rows a client knows how to open.
class AirableMessage
{
public:
    static QSharedPointer<AirableMessage> create(CMNodesWorker* worker, int id, airable::MessageItem::Ptr message);
    ~AirableMessage();

    CMPath path() const { return mRoot->path(); }
    // The link and the id of button `index`; empty past the last button.
    QString getLink(int index) const;
    QString getCombinedId(int index) const;
    // Closes the dialog and sends its client to path.
    void closeWithRedirect(CMPath const& path);

private:
    AirableMessage(CMNodesWorker* worker, int id, airable::MessageItem const& message);

    QSharedPointer<CMListRowsNode> mRoot;
    QSharedPointer<CMUINode> mText;
    QVector<QSharedPointer<CMActivateNode>> mButtons;
    QVector<QString> mLinks;
};
