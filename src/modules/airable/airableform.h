#pragma once

#include "FieldItem.h"
#include "FormItem.h"
#include "cmnode.h"
#include "tarnurl.h"

#include <QMap>
#include <QPair>
#include <QSharedPointer>
#include <QVector>

class CMNodesWorker;

// The option list of a select field, shown at the field's edit path.
class SelectFieldListNode
{
public:
    SelectFieldListNode(CMNodesWorker* worker, CMPath const& path, QVector<QPair<QString, QString>> const& options);

private:
    QSharedPointer<CMListRowsNode> mNode;
    QVector<QSharedPointer<CMNode>> mChildren;
};

// A form of the cloud as a node subtree: one row per visible field and per
// button, and the way back from the edited values and a pressed button to
// the cloud URL they mean. The URL base holds the hidden fields as its query.
class AirableForm : public TarnUrl
{
public:
    static QSharedPointer<AirableForm> create(CMNodesWorker* worker, int id, airable::FormItem::Ptr form);

    CMPath path() const;
    QString formId() const;
    QString combineIdToQueryId(QString const& id) const;
    // The URL a press of the button means; *error is written only when a
    // field's value fails its rules.
    TarnUrl getQuery(QString const& buttonId, QString* error) const;

private:
    AirableForm(CMNodesWorker* worker, int id, airable::FormItem::Ptr form);
    void addField(CMNodesWorker* worker, CMPath const& stem, airable::FieldItem const& field);
    void addSignUp(QString const& link);

    airable::FormItem::Ptr mForm;
    QSharedPointer<CMListRowsNode> mRoot;
    QVector<QSharedPointer<CMValueNode>> mFields;
    QVector<QSharedPointer<CMActivateNode>> mButtons;
    QMap<QString, QSharedPointer<SelectFieldListNode>> mSelectLists;
};

// A node handle that releases its node the way the tree wants it released.
template <typename T>
QSharedPointer<T> nodeHandle(T* node)
{
    return QSharedPointer<T>(node, [](T* n) { n->deleteLater(); });
}
