#include "session.h"
#include "dialogview.h"
#include "interruptlistener.h"
#include "jsonvalue.h"
#include "sessionrows.h"

#include "cmglobal.h"
#include "cmroot.h"
#include "tarnclient.h"

#include <QEventLoop>
#include <algorithm>

namespace {

// Rows are numbered by the platform's int; a bound beyond that is no row.
bool toRowBound(QString const& text, qint64* row)
{
    bool ok = false;
    *row = text.toLongLong(&ok);
    return ok && *row >= 0 && *row <= kLastRow;
}

} // namespace

int Session::list(Command const& command)
{
    CMPath path = mCurrent;
    if (!command.args.isEmpty() && !resolve(command.args[0], &path))
        return ExitErrorReply;
    // A select field has no rows of its own; a person asks for its options.
    QJsonObject const field = selectField(path);
    if (!field.isEmpty() && command.args.size() == 1)
        return listOptions(field);
    qint64 from = 0;
    if (command.args.size() > 1 && !toRowBound(command.args[1], &from))
        return fail("usage", QStringLiteral("FROM must be a row number from 0 to %1, not '%2'")
                                 .arg(kLastRow).arg(command.args[1]),
                    ExitUsage);
    qint64 to = qMin(from + mPageSize - 1, kLastRow);
    if (command.args.size() > 2 && (!toRowBound(command.args[2], &to) || to < from))
        return fail("usage", QStringLiteral("TO must be a row number from FROM to %1, not '%2'")
                                 .arg(kLastRow).arg(command.args[2]),
                    ExitUsage);
    return openAndPrint(path, from, to, command.roles.isEmpty() ? CMAllRoles() : command.roles, command.follow);
}

int Session::next()
{
    if (mLast.read.path.isEmpty())
        return fail("noListing", QStringLiteral("Nothing listed yet"), ExitErrorReply);
    Listing listing = mLast;
    listing.from = mLast.from + mLast.rowPaths.size();
    listing.to = qMin(listing.from + (mLast.to - mLast.from), kLastRow);
    listing.read.redirect = CMPath();
    if (mReader.read(listing.from, listing.to, listing.roles, &listing.read) != ListingReader::Status::Ok)
        return fail(mReadFailure.name, mReadFailure.message, ExitErrorReply);
    return printListing(listing);
}

int Session::openAndPrint(CMPath const& path, qint64 from, qint64 to, QStringList const& roles, bool follow)
{
    Listing listing;
    Failure failure;
    if (!open(path, from, to, roles, follow, &listing, &failure))
        return fail(failure.name, failure.message, ExitErrorReply);
    return printListing(listing);
}

bool Session::open(CMPath const& path, qint64 from, qint64 to, QStringList const& roles, bool follow,
                   Listing* listing, Failure* failure)
{
    listing->from = from;
    listing->to = to;
    listing->roles = roles;
    switch (mReader.open(path, from, to, roles, follow, &listing->read)) {
    case ListingReader::Status::Ok:
        return true;
    case ListingReader::Status::Failed:
        *failure = mReadFailure;
        return false;
    case ListingReader::Status::RedirectLoop:
        *failure = {QStringLiteral("redirectLoop"), QStringLiteral("More than %1 redirects from %2")
                                                        .arg(ListingReader::kMaxRedirects)
                                                        .arg(mPaths.shortText(path))};
        return false;
    }
    return false;
}

int Session::printListing(Listing listing)
{
    mPrinter->print(Printer::Kind::Listing, show(std::move(listing)));
    return ExitOk;
}

QJsonObject Session::show(Listing listing)
{
    ListingReader::Rows const& read = listing.read;
    listing.rows = rowObjects(listing.roles, read.rows);
    QJsonObject const own = jsonFromVariant(read.roles.__variant()).toObject();
    // Without their kinds, a dialog's rows can't be told apart. A login
    // message is a plain listing to the tree, but a dialog to a person.
    bool const offersLogin = std::any_of(listing.rows.begin(), listing.rows.end(),
                                         [](QJsonValue const& r) { return DialogView::isLogin(r.toObject()); });
    if ((DialogView::isDialog(own) || offersLogin) && listing.roles.contains(TarnRoles::Type())) {
        listing.dialog = describeDialog(listing);
        if (listing.menu)
            listing.dialog.insert("kind", QStringLiteral("menu"));
    }
    listing.rowPaths.clear();
    for (auto const& r : listing.rows) {
        QJsonObject const row = r.toObject();
        CMPath path = CMPath::fromEncoded(row.value(TarnRoles::Path()).toString());
        if (path.isEmpty())
            path = DialogView::actionPath(row);
        listing.rowPaths << path;
    }
    if (mLast.watch && mLast.read.path == read.path)
        listing.watch = mLast.watch;
    else
        listing.watch = std::make_shared<CMRowsWatch>(read.path);
    mLast = listing;

    QJsonObject body;
    if (!read.redirect.isEmpty())
        body.insert("redirect", read.redirect.toEncoded());
    body.insert("path", read.path.toEncoded());
    body.insert("from", listing.from);
    body.insert("to", listing.to);
    body.insert("count", read.count);
    body.insert("roles", own);
    body.insert("rows", listing.rows);
    if (!listing.dialog.isEmpty())
        body.insert("dialog", listing.dialog);
    return body;
}

int Session::get(Command const& command)
{
    CMPath path;
    if (!resolve(command.args[0], &path))
        return ExitErrorReply;
    QStringList const roles = command.roles.isEmpty() ? CMAllRoles() : command.roles;
    auto reply = TarnClient::data(path, roles);
    if (!await(reply))
        return ExitErrorReply;
    mPrinter->print(Printer::Kind::Data, {{"path", path.toEncoded()}, {"roles", presentRoles(roles, reply.value())}});
    return ExitOk;
}

int Session::watch(Command const& command)
{
    CMPath path;
    if (!resolve(command.args[0], &path))
        return ExitErrorReply;
    CMRowsWatch watch(path);
    if (!watch.isValid())
        return fail("notFound", QStringLiteral("No worker for path %1").arg(path.toEncoded()), ExitErrorReply);
    int const status =
        openAndPrint(path, 0, mPageSize - 1, command.roles.isEmpty() ? CMAllRoles() : command.roles, true);
    if (status != ExitOk)
        return status;
    QObject::connect(&watch, &CMRowsWatch::changed, [this, path](QString const& type, int from, int to) {
        mPrinter->print(Printer::Kind::Change, {{"path", path.toEncoded()},
                                                {"change", QJsonObject{{"type", type}, {"from", from}, {"to", to}}}});
    });
    QEventLoop loop;
    std::unique_ptr<InterruptListener> own;
    InterruptListener* interrupts = mInterrupts;
    if (!interrupts) {
        own = std::make_unique<InterruptListener>();
        interrupts = own.get();
    }
    QObject::connect(interrupts, &InterruptListener::interrupted, &loop, &QEventLoop::quit);
    QObject::connect(interrupts, &InterruptListener::terminated, &loop, [this, &loop] {
        mEnded = true;
        loop.quit();
    });
    loop.exec();
    return ExitOk;
}

int Session::changeTo(Command const& command)
{
    if (command.args[0] == QLatin1String(".."))
        return back();
    CMPath path;
    if (!resolve(command.args[0], &path))
        return ExitErrorReply;
    mVisited << mCurrent;
    mCurrent = path;
    return printPath();
}

int Session::back()
{
    if (mVisited.isEmpty())
        return fail("noHistory", QStringLiteral("Nothing to go back to"), ExitErrorReply);
    mCurrent = mVisited.takeLast();
    return printPath();
}

int Session::printPath()
{
    mPrinter->print(Printer::Kind::Path, {{"path", mCurrent.toEncoded()}});
    return ExitOk;
}
