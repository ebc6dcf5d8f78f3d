#include "session.h"
#include "helptext.h"
#include "sessionrows.h"

#include "cmglobal.h"
#include "httpclientfailurelog.h"

namespace {

// The page a link row of a dialog opens, if the row is one.
QString linkOf(QJsonObject const& dialog, int row)
{
    for (auto const& l : dialog.value("links").toArray()) {
        if (l.toObject().value("row").toInt() == row)
            return l.toObject().value("url").toString();
    }
    return QString();
}

} // namespace

Session::Session(PathText const& paths, ReplyWaiter const& waiter, Printer* printer, int pageSize, bool inShell,
                 CloudEar const& ear)
    : mPaths(paths), mWaiter(waiter), mPrinter(printer), mPageSize(pageSize), mInShell(inShell), mEar(ear),
      mReader([this](CMVoidReply const& reply) { return settle(reply, &mReadFailure); }, pageSize),
      mCurrent(paths.parse(QStringLiteral("/")))
{
}

Session::~Session() = default;

void Session::setInterrupts(InterruptListener* interrupts)
{
    mInterrupts = interrupts;
    mWaiter.setInterrupts(interrupts);
}

int Session::run(Command const& command)
{
    mTransportMark = HttpClientFailureLog::mark();
    if (command.help) {
        mPrinter->print(Printer::Kind::Help, {{"help", commandHelp(*findCommand(command.name))}});
        return ExitOk;
    }
    QString const& name = command.name;
    if (name == QLatin1String("ls"))
        return list(command);
    if (name == QLatin1String("next"))
        return next();
    if (name == QLatin1String("get"))
        return get(command);
    if (name == QLatin1String("set"))
        return set(command);
    if (name == QLatin1String("play"))
        return play(command);
    if (name == QLatin1String("player"))
        return player(command);
    if (name == QLatin1String("menu"))
        return menu(command);
    if (name == QLatin1String("oauth"))
        return oauth(command);
    if (name == QLatin1String("watch"))
        return watch(command);
    if (name == QLatin1String("cd"))
        return changeTo(command);
    if (name == QLatin1String("back"))
        return back();
    if (name == QLatin1String("pwd"))
        return printPath();
    if (name == QLatin1String("serve"))
        return fail("usage", QStringLiteral("serve runs on its own: tarn-host serve"), ExitUsage);
    return help(command);
}

int Session::help(Command const& command)
{
    QString text = mInShell ? shellHelp() : toolHelp();
    if (!command.args.isEmpty()) {
        CommandSpec const* spec = findCommand(command.args[0]);
        if (!spec || (spec->shellOnly && !mInShell))
            return fail("usage", QStringLiteral("unknown command '%1'").arg(command.args[0]), ExitUsage);
        text = commandHelp(*spec);
    }
    mPrinter->print(Printer::Kind::Help, {{"help", text}});
    return ExitOk;
}

bool Session::resolve(QString const& text, CMPath* path)
{
    if (text == QLatin1String(".")) {
        *path = mCurrent;
        return true;
    }
    if (!isRowNumber(text)) {
        *path = mPaths.parse(text);
        return true;
    }
    int index = 0;
    if (!lastRow(text, &index))
        return false;
    if (mLast.rowPaths[index].isEmpty()) {
        QString const url = linkOf(mLast.dialog, int(mLast.from) + index);
        fail("noRow", url.isEmpty() ? QStringLiteral("Row %1 has no path").arg(text)
                                    : QStringLiteral("Row %1 is a page to open in a browser: %2").arg(text, url),
             ExitErrorReply);
        return false;
    }
    *path = mLast.rowPaths[index];
    return true;
}

TarnRoles Session::listedRow(QString const& text) const
{
    bool ok = false;
    qint64 const place = isRowNumber(text) ? text.toLongLong(&ok) - mLast.from : -1;
    if (!ok || place < 0 || place >= mLast.read.rows.size())
        return TarnRoles();
    return TarnRoles(CMGlobal::rolesValuesToHash(mLast.roles, mLast.read.rows.at(int(place)).toList()));
}

bool Session::lastRow(QString const& text, int* index)
{
    // A number names a row of the last listing, and nothing else: one that
    // is out of range, negative or too long for any row is no row.
    bool ok = false;
    qint64 const row = text.toLongLong(&ok);
    qint64 const place = ok && row >= 0 ? row - mLast.from : -1;
    if (place < 0 || place >= mLast.rowPaths.size()) {
        fail("noRow", QStringLiteral("No row %1 in the last listing").arg(text), ExitErrorReply);
        return false;
    }
    *index = int(place);
    return true;
}

bool Session::settle(CMVoidReply const& reply, Failure* failure)
{
    switch (mWaiter.wait(reply)) {
    case ReplyWaiter::Outcome::Finished:
        break;
    case ReplyWaiter::Outcome::TimedOut:
        *failure = {QStringLiteral("timeout"), QStringLiteral("No answer within %1 s").arg(mWaiter.timeoutMs() / 1000)};
        return false;
    case ReplyWaiter::Outcome::Terminated:
        mEnded = true;
        [[fallthrough]];
    case ReplyWaiter::Outcome::Interrupted:
        *failure = {QStringLiteral("interrupted"), QStringLiteral("Interrupted; the answer is no longer awaited")};
        return false;
    }
    if (reply.hasError()) {
        CMError const error = reply.error();
        QString const message = error.messageText().isEmpty() ? QStringLiteral("The request failed")
                                                              : error.messageText();
        *failure = {error.name().isEmpty() ? QStringLiteral("Error") : error.name(),
                    explained(error.name(), message)};
        return false;
    }
    return true;
}

QString Session::explained(QString const& errorName, QString const& message) const
{
    if (!errorName.isEmpty() && errorName != CMError::DefaultName())
        return message;
    QList<HttpClientResult> const failures = HttpClientFailureLog::since(mTransportMark);
    return failures.isEmpty() ? message : message + QStringLiteral(": ") + failures.last().errorString();
}

bool Session::await(CMVoidReply const& reply)
{
    Failure failure;
    if (settle(reply, &failure))
        return true;
    fail(failure.name, failure.message, ExitErrorReply);
    return false;
}

int Session::fail(QString const& name, QString const& message, int status)
{
    mPrinter->error(name, message);
    return status;
}
