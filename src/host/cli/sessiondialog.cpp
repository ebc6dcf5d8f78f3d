#include "session.h"
#include "dialogview.h"
#include "jsonvalue.h"
#include "sessionrows.h"
#include "valuerecord.h"

#include "cmglobal.h"
#include "cmroot.h"
#include "tarnactionreply.h"
#include "tarnclient.h"
#include "tarnedit.h"

namespace {

// A select offers a handful of options; a list longer than this is cut.
qint64 const kLastOption = 999;

// Paths of the platform's own that no worker serves (the home screen) are
// for the device to open, not for a listing.
bool browsable(CMPath const& path)
{
    auto* root = CMRootWorker::instance();
    return root->workerFor(path) || root->workerFor(CMPath(path.prefix(), QString()));
}

} // namespace

QJsonObject Session::describeDialog(Listing const& listing)
{
    // The options are shown with their field, as a device's interface
    // offers them; a list that can't be read shows none.
    QHash<QString, QJsonArray> options;
    QStringList const roles{TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Value()};
    for (CMPath const& list : DialogView::optionLists(listing.rows)) {
        ListingReader::Rows read;
        if (mReader.open(list, 0, kLastOption, roles, true, &read) == ListingReader::Status::Ok)
            options.insert(list.toEncoded(), DialogView::options(rowObjects(roles, read.rows)));
    }
    return DialogView::describe(listing.rows, int(listing.from), options);
}

QJsonObject Session::selectField(CMPath const& path) const
{
    for (auto const& f : mLast.dialog.value("fields").toArray()) {
        QJsonObject const field = f.toObject();
        if (field.value("kind").toString() == QLatin1String("select")
            && field.value("path").toString() == path.toEncoded())
            return field;
    }
    return QJsonObject();
}

int Session::listOptions(QJsonObject const& field)
{
    CMPath const path = CMPath::fromEncoded(field.value("path").toString());
    // The field's value now, which a set may have changed since the listing.
    auto value = TarnClient::data(path, {TarnRoles::Edit(), TarnRoles::Value()});
    if (!await(value))
        return ExitErrorReply;
    TarnRoles const roles(CMGlobal::rolesValuesToHash({TarnRoles::Edit(), TarnRoles::Value()}, value.value()));
    CMPath const list = TarnEdit(TarnHash::toHash(roles.value(TarnRoles::Edit()))).enumPath();
    QStringList const optionRoles{TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Value()};
    ListingReader::Rows read;
    if (mReader.open(list, 0, kLastOption, optionRoles, true, &read) != ListingReader::Status::Ok)
        return fail(mReadFailure.name, mReadFailure.message, ExitErrorReply);

    // The options are a look at one field: the form stays the last listing,
    // so its row numbers still name its fields and buttons.
    QJsonArray const rows = rowObjects(optionRoles, read.rows);
    QJsonObject const shown{{"path", field.value("path")},
                            {"row", field.value("row")},
                            {"title", field.value("title")},
                            {"value", TarnValue(TarnHash::toHash(roles.value(TarnRoles::Value()))).string_()}};
    mPrinter->print(Printer::Kind::Listing, {{"path", read.path.toEncoded()},
                                             {"from", 0},
                                             {"to", qMax(0, read.count - 1)},
                                             {"count", read.count},
                                             {"roles", jsonFromVariant(read.roles.__variant())},
                                             {"rows", rows},
                                             {"dialog", DialogView::describe(rows, 0, {})},
                                             {"field", shown}});
    return ExitOk;
}

int Session::set(Command const& command)
{
    QString const& role = command.args[1];
    if (!CMAllRoles().contains(role))
        return fail("usage", QStringLiteral("unknown role '%1'").arg(role), ExitUsage);
    QVariant value;
    if (!variantFromJsonText(command.args[2], &value))
        return fail("usage", QStringLiteral("'%1' is no JSON value (a text needs quotes: '\"%1\"')").arg(command.args[2]),
                    ExitUsage);
    CMPath path;
    if (!resolve(command.args[0], &path))
        return ExitErrorReply;
    if (role == TarnRoles::Value()) {
        // The platform's own values have a type; a module's values are
        // checked by the module.
        auto* root = CMRootWorker::instance();
        QVariant const stored = root->workerFor(path) ? QVariant() : root->getValue(path);
        QString expected;
        if (!toValueRecord(value, stored, &value, &expected))
            return fail(CMError::InvalidArgumentName(), QStringLiteral("%1 takes %2, not %3")
                                                            .arg(mPaths.shortText(path), expected, command.args[2]),
                        ExitErrorReply);
    }
    auto reply = TarnClient::setData(path, role, value);
    Failure failure;
    if (!settle(reply, &failure)) {
        QString const broken = role == TarnRoles::Activate() && reply.hasError() ? brokenFields(path) : QString();
        return fail(failure.name, broken.isEmpty() ? failure.message : failure.message + QLatin1Char(' ') + broken,
                    ExitErrorReply);
    }
    QJsonObject body{{"path", path.toEncoded()},
                     {"role", role},
                     {"value", jsonFromVariant(value)},
                     {"reply", jsonFromVariant(reply.value())}};
    int const status = role == TarnRoles::Activate() ? follow(path, reply.value(), &body) : ExitOk;
    mPrinter->print(Printer::Kind::Set, body);
    return status;
}

int Session::follow(CMPath const& button, QVariant const& answer, QJsonObject* body)
{
    TarnActionReply const action(TarnHash::toHash(answer));
    if (!action.__contains(QStringLiteral("result")) && !action.__contains(QStringLiteral("events")))
        return ExitOk;
    // A close without a path closes the dialog the button was pressed in.
    CMPath const dialog = mLast.rowPaths.contains(button) ? mLast.read.path : CMPath();
    QJsonArray closed;
    for (TarnEvent const& event : action.events()) {
        if (event.rowsType() == TarnEventRowsType::Close)
            closed << (event.path().isEmpty() ? dialog : event.path()).toEncoded();
    }
    if (!closed.isEmpty())
        body->insert("closed", closed);
    return goTo(action.result().path(), body);
}

int Session::goTo(CMPath const& target, QJsonObject* body)
{
    if (target.isEmpty())
        return ExitOk;
    body->insert("goto", target.toEncoded());
    if (!browsable(target))
        return ExitOk;

    Listing listing;
    Failure failure;
    if (!open(target, 0, mPageSize - 1, CMAllRoles(), true, &listing, &failure)) {
        // The press itself went through; the object says both.
        QJsonObject const error{{"name", failure.name}, {"message", failure.message}};
        body->insert("listing", QJsonObject{{"error", error}});
        mPrinter->errorLine(failure.message);
        return ExitErrorReply;
    }
    body->insert("listing", show(listing));
    if (mInShell) {
        mVisited << mCurrent;
        mCurrent = target;
    }
    return ExitOk;
}

QString Session::brokenFields(CMPath const& button)
{
    if (mLast.dialog.isEmpty() || !mLast.rowPaths.contains(button))
        return QString();
    // The values as they are now, not as the listing showed them.
    QStringList const roles{TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Value(), TarnRoles::Edit()};
    ListingReader::Rows read;
    read.path = mLast.read.path;
    read.count = mLast.read.count;
    if (mReader.read(0, kLastRow, roles, &read) != ListingReader::Status::Ok)
        return QString();
    QStringList broken;
    for (QVariant const& r : read.rows) {
        TarnRoles const row(CMGlobal::rolesValuesToHash(roles, r.toList()));
        if (row.value(TarnRoles::Type()).toString() != TarnRolesType::Value())
            continue;
        QString const rule = CMEdit::violation(TarnValue(TarnHash::toHash(row.value(TarnRoles::Value()))),
                                               TarnEdit(TarnHash::toHash(row.value(TarnRoles::Edit()))));
        if (!rule.isEmpty())
            broken << QStringLiteral("\"%1\" %2").arg(row.title().toString(), rule);
    }
    return broken.join(QStringLiteral("; "));
}
