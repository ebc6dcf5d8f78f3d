#include "airableform.h"

#include "ButtonItem.h"
#include "FieldItem.h"
#include "cmroot.h"
#include "cmworker.h"
#include "tarnconstants.h"
#include "tarndialogtypes.h"
#include "tarnedit.h"
#include "tarnmediadata.h"

#include <QRegExp>

namespace {

// The buttons that send the form's values; every other button is a link.
QStringList const submittingButtons{QStringLiteral("forward"), QStringLiteral("finish"), QStringLiteral("submit"),
                                    QStringLiteral("repeat")};

// The one field the cloud wants quoted: a search query of one service.
QString const quotedQueryField = QStringLiteral("airable://qobuz/field/q");

} // namespace

SelectFieldListNode::SelectFieldListNode(CMNodesWorker* worker, CMPath const& path,
                                         QVector<QPair<QString, QString>> const& options)
    : mNode(nodeHandle(CMListRowsNode::create(worker->nodes(), path)))
{
    mNode->setContainerType(int(TarnDialogContainerType::Dialog));
    for (auto const& option : options) {
        TarnRoles row;
        row.setTitle(TrString(option.second));
        row.setValue(TarnValue().setString_(option.first));
        row.setType(int(TarnDialogRowType::Option));
        mNode->rowsAppend(row);
    }
}

QSharedPointer<AirableForm> AirableForm::create(CMNodesWorker* worker, int id, airable::FormItem::Ptr form)
{
    return QSharedPointer<AirableForm>(new AirableForm(worker, id, form));
}

AirableForm::AirableForm(CMNodesWorker* worker, int id, airable::FormItem::Ptr form)
    : mForm(form)
{
    QString const number = QString::number(id);
    mRoot = nodeHandle(CMListRowsNode::create(worker->nodes(), worker->addPrefix(TarnAirablePrefixForm() + number)));
    mRoot->setTitle(TrString(form->title()));
    mRoot->setId(form->combinedId());
    mRoot->setContainerType(int(TarnDialogContainerType::Dialog));

    CMPath const stem = worker->addPrefix(TarnAirablePrefixForm() + number + QLatin1Char(':'));
    for (auto const& item : form->items()) {
        if (auto const field = item.dynamicCast<airable::FieldItem>()) {
            addField(worker, stem, *field);
        } else if (auto const button = item.dynamicCast<airable::ButtonItem>()) {
            // Cancel needs no node: a client closes the dialog by itself.
            if (button->name() == QLatin1String("cancel"))
                continue;
            auto const node = nodeHandle(CMActivateNode::create(worker->nodes(), stem + button->name()));
            node->setId(button->combinedId());
            node->setTitle(TrString(button->title()));
            mRoot->rowsAppend(node->path());
            mButtons << node;
        }
    }

    QString const signUp = form->signUpLink();
    if (!signUp.isEmpty())
        addSignUp(signUp);
}

void AirableForm::addField(CMNodesWorker* worker, CMPath const& stem, airable::FieldItem const& field)
{
    if (field.type() == QLatin1String("hidden")) {
        addQueryItem(combineIdToQueryId(field.name()), field.value());
        return;
    }
    auto const node = nodeHandle(CMValueNode::create(worker->nodes(), stem + field.name(), nullptr));
    node->setLongDescription(TrString(field.description()));
    node->setReadOnly(false);
    node->setValue(TarnValue().setString_(field.value()));
    node->setId(field.combinedId());

    QString title = field.title();
    QString const type = field.type();
    if (type == QLatin1String("select")) {
        QVector<QPair<QString, QString>> const options = field.options();
        // The options are the rows at the enumeration path; the edit rule
        // names no values, so the cloud judges what it is sent.
        TarnEdit edit;
        edit.setEnumPath(node->path() + QStringLiteral(":edit"));
        edit.setType(TarnEditType::Select);
        node->setEdit(edit);
        // A select without a value shows its first option.
        if (field.value().isEmpty() && !options.isEmpty())
            node->setValue(TarnValue().setString_(options.first().first));
        mSelectLists.insert(field.name(), QSharedPointer<SelectFieldListNode>::create(worker, edit.enumPath(), options));
    } else {
        if (type == QLatin1String("text")) {
            if (field.required())
                node->setEdit(TarnEdit().setMinLength(1));
        } else if (type == QLatin1String("password")) {
            node->setEdit(TarnEdit().setPassword(true));
        }
        // Only a select keeps the colon its title came with.
        title.replace(QRegExp(QStringLiteral(":$"), Qt::CaseSensitive), QString());
    }
    node->setTitle(TrString(title));
    mRoot->rowsAppend(node->path());
    mFields << node;
}

void AirableForm::addSignUp(QString const& link)
{
    QString const service = mForm->stype();
    if (service == TarnAirableDeezerServiceType())
        CMRoot()->setValue(TarnAirableDeezerSignUpLinkPath(), TarnValue().setString_(link), CMReply<QVariant>());
    QString const text = service == TarnAirableQobuzServiceType() ? QStringLiteral("FREE TRIAL")
                                                                  : QStringLiteral("Create account");
    TarnRoles row;
    row.setTitle(TrString(TrCharData(QStringLiteral("airable"), text)));
    row.setType(int(TarnDialogRowType::Link));
    row.setId(QStringLiteral("airable://createAccountUrl"));
    row.setMediaData(TarnMediaData().setResources({TarnResource().setUri(link).__variant()}));
    mRoot->rowsAppend(row);
}

CMPath AirableForm::path() const
{
    return mRoot->path();
}

QString AirableForm::formId() const
{
    return mForm->combinedId();
}

QString AirableForm::combineIdToQueryId(QString const& id) const
{
    if (!id.contains(QLatin1Char(':')))
        return id;
    return id.split(QLatin1Char('/')).last();
}

TarnUrl AirableForm::getQuery(QString const& buttonId, QString* error) const
{
    auto const button = mForm->button(buttonId);
    if (!button)
        return TarnUrl();
    TarnUrl url = TarnUrl::fromEncoded(button->baseUrl().toUtf8());
    if (!submittingButtons.contains(buttonId))
        return url;

    url.setQueryItems(queryItems());
    for (auto const& node : mFields) {
        TarnValue value = node->value();
        if (node->id() == quotedQueryField)
            value.setString_(QLatin1Char('"') + value.string_() + QLatin1Char('"'));
        if (CMEdit::validate(TarnValue(), value, node->edit(), CMPath()).isEmpty()) {
            *error = QStringLiteral("Field value validation error");
            return TarnUrl();
        }
        url.addQueryItem(combineIdToQueryId(node->id()), value.string_());
    }
    return url;
}
