#include "session.h"
#include "helptext.h"
#include "interruptlistener.h"
#include "jsonvalue.h"

#include "cmglobal.h"
#include "cmroot.h"
#include "simulatedstreamer.h"
#include "tarnclient.h"
#include "tarnvalue.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTimer>

namespace {

int const kMaxRedirects = 8;

QJsonObject presentRoles(QStringList const& roles, QList<QVariant> const& values)
{
    QJsonObject object;
    auto const hash = CMGlobal::rolesValuesToHash(roles, values);
    for (auto it = hash.cbegin(); it != hash.cend(); ++it) {
        if (it.value().isValid())
            object.insert(it.key(), jsonFromVariant(it.value()));
    }
    return object;
}

bool toRow(QString const& text, int* row)
{
    bool ok = false;
    *row = text.toInt(&ok);
    return ok && *row >= 0;
}

// The Value role carries a platform value record; a bare string, truth or
// number typed for it is the one field of such a record.
QVariant valueRecord(QVariant const& typed)
{
    switch (typed.type()) {
    case QVariant::String:
        return TarnValue().setString_(typed.toString()).__variant();
    case QVariant::Bool:
        return TarnValue().setBool_(typed.toBool()).__variant();
    case QVariant::Int:
        return TarnValue().setInt_(typed.toInt()).__variant();
    default:
        return typed;
    }
}

} // namespace

Session::Session(PathText const& paths, ReplyWaiter const& waiter, Printer* printer, int pageSize, bool inShell)
    : mPaths(paths), mWaiter(waiter), mPrinter(printer), mPageSize(pageSize), mInShell(inShell),
      mCurrent(paths.parse(QStringLiteral("/")))
{
}

int Session::run(Command const& command)
{
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
    if (name == QLatin1String("watch"))
        return watch(command);
    if (name == QLatin1String("cd"))
        return changeTo(command);
    if (name == QLatin1String("back"))
        return back();
    if (name == QLatin1String("pwd"))
        return printPath();
    return help(command);
}

int Session::list(Command const& command)
{
    CMPath path = mCurrent;
    if (!command.args.isEmpty() && !resolve(command.args[0], &path))
        return ExitErrorReply;
    int from = 0;
    int to = 0;
    if (command.args.size() > 1 && !toRow(command.args[1], &from))
        return fail("usage", QStringLiteral("FROM must be a row number, not '%1'").arg(command.args[1]), ExitUsage);
    to = from + mPageSize - 1;
    if (command.args.size() > 2 && (!toRow(command.args[2], &to) || to < from))
        return fail("usage", QStringLiteral("TO must be a row number from FROM on, not '%1'").arg(command.args[2]),
                    ExitUsage);
    return fetchAndPrint(path, from, to, command.roles.isEmpty() ? CMAllRoles() : command.roles, command.follow);
}

int Session::next()
{
    if (mLast.path.isEmpty())
        return fail("noListing", QStringLiteral("Nothing listed yet"), ExitErrorReply);
    int const span = mLast.to - mLast.from + 1;
    return fetchAndPrint(mLast.path, mLast.to + 1, mLast.to + span, mLast.roles, true);
}

int Session::fetchAndPrint(CMPath path, int from, int to, QStringList const& roles, bool follow)
{
    QJsonObject body;
    TarnRowsRoles answer;
    for (int redirects = 0;; ++redirects) {
        auto reply = TarnClient::rows(path, from, to, roles);
        if (!await(reply))
            return ExitErrorReply;
        answer = reply.value();
        if (!answer.hasRowsRedirect())
            break;
        body.insert("redirect", answer.rowsRedirect().toEncoded());
        if (!follow)
            break;
        if (redirects == kMaxRedirects)
            return fail("redirectLoop", QStringLiteral("More than %1 redirects from %2")
                                            .arg(kMaxRedirects).arg(mPaths.shortText(path)),
                        ExitErrorReply);
        path = answer.rowsRedirect();
    }

    QJsonArray rows;
    Listing listing{path, from, to, roles, {}};
    for (QVariant const& row : answer.rows()) {
        QJsonObject const object = presentRoles(roles, row.toList());
        rows << object;
        listing.rowPaths << CMPath::fromEncoded(object.value(TarnRoles::Path()).toString());
    }
    mLast = listing;
    body.insert("path", path.toEncoded());
    body.insert("from", from);
    body.insert("to", to);
    body.insert("count", answer.rowsCount());
    body.insert("roles", jsonFromVariant(answer.roles().__variant()));
    body.insert("rows", rows);
    mPrinter->print(Printer::Kind::Listing, body);
    return ExitOk;
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
    if (role == TarnRoles::Value())
        value = valueRecord(value);
    auto reply = TarnClient::setData(path, role, value);
    if (!await(reply))
        return ExitErrorReply;
    mPrinter->print(Printer::Kind::Set, {{"path", path.toEncoded()},
                                         {"role", role},
                                         {"value", jsonFromVariant(value)},
                                         {"reply", jsonFromVariant(reply.value())}});
    return ExitOk;
}

int Session::play(Command const& command)
{
    CMPath path;
    if (!resolve(command.args[0], &path))
        return ExitErrorReply;
    QStringList const roles{TarnRoles::Title(), TarnRoles::Path(), TarnRoles::MediaData()};
    auto reply = TarnClient::data(path, roles);
    if (!await(reply))
        return ExitErrorReply;
    TarnRoles const row(CMGlobal::rolesValuesToHash(roles, reply.value()));
    if (row.mediaData().isEmpty())
        return fail("notPlayable", QStringLiteral("%1 has nothing to play").arg(mPaths.shortText(path)),
                    ExitErrorReply);

    // The stand-in player resolves the row through the module's prePlay
    // road; the first state it reports ends the wait.
    SimulatedStreamer streamer;
    streamer.makeActive();
    QJsonArray steps;
    QEventLoop loop;
    QObject::connect(&streamer, &SimulatedStreamer::step, [&](QString const& text) { steps << text; });
    bool answered = false;
    bool settled = false;
    QObject::connect(&streamer, &SimulatedStreamer::stateChanged, &loop, [&](TarnPlayLogicData const& state) {
        answered = true;
        settled = state.state() == TarnPlayLogicData::Playing || state.state() == TarnPlayLogicData::Stopped;
        if (settled)
            loop.quit();
    });
    QTimer::singleShot(mWaiter.timeoutMs(), &loop, &QEventLoop::quit);
    streamer.play(row);
    // A row the player refuses at once has settled before the loop runs.
    if (!settled)
        loop.exec();

    if (streamer.state() != TarnPlayLogicData::Playing) {
        QString const text = mPaths.shortText(path);
        if (!answered)
            return fail("timeout", QStringLiteral("%1: no answer from the player").arg(text), ExitErrorReply);
        if (streamer.errorName().isEmpty())
            return fail("notPlayable", QStringLiteral("%1 has nothing to play").arg(text), ExitErrorReply);
        return fail("playback", QStringLiteral("%1 did not play: %2").arg(text, streamer.errorName()), ExitErrorReply);
    }
    mPrinter->print(Printer::Kind::Play, {{"path", path.toEncoded()},
                                          {"steps", steps},
                                          {"uri", streamer.uri()},
                                          {"state", QStringLiteral("playing")}});
    streamer.stop(0);
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
        fetchAndPrint(path, 0, mPageSize - 1, command.roles.isEmpty() ? CMAllRoles() : command.roles, true);
    if (status != ExitOk)
        return status;
    QObject::connect(&watch, &CMRowsWatch::changed, [this, path](QString const& type, int from, int to) {
        mPrinter->print(Printer::Kind::Change, {{"path", path.toEncoded()},
                                                {"change", QJsonObject{{"type", type}, {"from", from}, {"to", to}}}});
    });
    QEventLoop loop;
    InterruptListener interrupt;
    QObject::connect(&interrupt, &InterruptListener::interrupted, &loop, &QEventLoop::quit);
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
    static QRegularExpression const number(QStringLiteral("^[0-9]+$"));
    if (text == QLatin1String(".")) {
        *path = mCurrent;
        return true;
    }
    if (!number.match(text).hasMatch()) {
        *path = mPaths.parse(text);
        return true;
    }
    int const row = text.toInt();
    int const index = row - mLast.from;
    if (mLast.path.isEmpty() || index < 0 || index >= mLast.rowPaths.size()) {
        fail("noRow", QStringLiteral("No row %1 in the last listing").arg(text), ExitErrorReply);
        return false;
    }
    if (mLast.rowPaths[index].isEmpty()) {
        fail("noRow", QStringLiteral("Row %1 has no path").arg(text), ExitErrorReply);
        return false;
    }
    *path = mLast.rowPaths[index];
    return true;
}

bool Session::await(CMVoidReply const& reply)
{
    if (!mWaiter.wait(reply)) {
        fail("timeout", QStringLiteral("No answer within %1 s").arg(mWaiter.timeoutMs() / 1000), ExitErrorReply);
        return false;
    }
    if (reply.hasError()) {
        CMError const error = reply.error();
        QString const message = error.messageText();
        fail(error.name().isEmpty() ? QStringLiteral("Error") : error.name(),
             message.isEmpty() ? QStringLiteral("The request failed") : message, ExitErrorReply);
        return false;
    }
    return true;
}

int Session::fail(QString const& name, QString const& message, int status)
{
    mPrinter->error(name, message);
    return status;
}
