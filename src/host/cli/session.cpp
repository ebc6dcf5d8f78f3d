#include "session.h"
#include "helptext.h"
#include "interruptlistener.h"
#include "jsonvalue.h"
#include "valuerecord.h"

#include "cmglobal.h"
#include "cmroot.h"
#include "simulatedstreamer.h"
#include "tarnclient.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QRegularExpression>
#include <limits>

namespace {

qint64 const kLastRow = std::numeric_limits<int>::max();

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

// Rows are numbered by the platform's int; a bound beyond that is no row.
bool toRowBound(QString const& text, qint64* row)
{
    bool ok = false;
    *row = text.toLongLong(&ok);
    return ok && *row >= 0 && *row <= kLastRow;
}

} // namespace

Session::Session(PathText const& paths, ReplyWaiter const& waiter, Printer* printer, int pageSize, bool inShell)
    : mPaths(paths), mWaiter(waiter), mPrinter(printer), mPageSize(pageSize), mInShell(inShell),
      mReader([this](CMVoidReply const& reply) { return await(reply); }, pageSize),
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
    listing.rowPaths.clear();
    if (mReader.read(listing.from, listing.to, listing.roles, &listing.read) != ListingReader::Status::Ok)
        return ExitErrorReply;
    return printListing(listing);
}

int Session::openAndPrint(CMPath const& path, qint64 from, qint64 to, QStringList const& roles, bool follow)
{
    Listing listing;
    listing.from = from;
    listing.to = to;
    listing.roles = roles;
    switch (mReader.open(path, from, to, roles, follow, &listing.read)) {
    case ListingReader::Status::Ok:
        break;
    case ListingReader::Status::Failed:
        return ExitErrorReply;
    case ListingReader::Status::RedirectLoop:
        return fail("redirectLoop", QStringLiteral("More than %1 redirects from %2")
                                        .arg(ListingReader::kMaxRedirects).arg(mPaths.shortText(path)),
                    ExitErrorReply);
    }
    return printListing(listing);
}

int Session::printListing(Listing listing)
{
    ListingReader::Rows const& read = listing.read;
    QJsonArray rows;
    for (QVariant const& row : read.rows) {
        QJsonObject const object = presentRoles(listing.roles, row.toList());
        rows << object;
        listing.rowPaths << CMPath::fromEncoded(object.value(TarnRoles::Path()).toString());
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
    body.insert("roles", jsonFromVariant(read.roles.__variant()));
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
    QString const text = mPaths.shortText(path);
    // Without a prePlay path there is nothing a player could open; a
    // listing's media data only tells whose it is.
    if (row.mediaData().metaData().prePlayPath().isEmpty())
        return fail("notPlayable", QStringLiteral("%1 has nothing to play").arg(text), ExitErrorReply);

    // The stand-in player resolves the row through the module's prePlay
    // road, trying the row's other resources as it goes; the wait ends when
    // it plays or has given up.
    SimulatedStreamer streamer;
    streamer.makeActive();
    QJsonArray steps;
    QObject::connect(&streamer, &SimulatedStreamer::step, [&steps](QString const& s) { steps << s; });
    CMReply<QVariant> const settled;
    QObject::connect(&streamer, &SimulatedStreamer::stateChanged, [settled](TarnPlayLogicData const& state) {
        if (state.state() == TarnPlayLogicData::Playing || state.state() == TarnPlayLogicData::Stopped)
            settled.setValue(state.state());
    });
    streamer.play(row);
    ReplyWaiter::Outcome const outcome = mWaiter.wait(settled);
    if (outcome != ReplyWaiter::Outcome::Finished) {
        streamer.stop(TarnPlayLogicStopReason::User);
        if (outcome == ReplyWaiter::Outcome::TimedOut)
            return fail("timeout", QStringLiteral("%1 did not play: no answer within %2 s")
                                       .arg(text).arg(mWaiter.timeoutMs() / 1000),
                        ExitErrorReply);
        mEnded = outcome == ReplyWaiter::Outcome::Terminated;
        return fail("interrupted", QStringLiteral("%1: interrupted").arg(text), ExitErrorReply);
    }
    if (streamer.state() != TarnPlayLogicData::Playing)
        return fail("playback", QStringLiteral("%1 did not play (%2): %3")
                                    .arg(text, streamer.errorName(), streamer.errorText()),
                    ExitErrorReply);
    mPrinter->print(Printer::Kind::Play, {{"path", path.toEncoded()},
                                          {"steps", steps},
                                          {"uri", streamer.uri()},
                                          {"state", QStringLiteral("playing")}});
    streamer.stop(TarnPlayLogicStopReason::User);
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
    static QRegularExpression const number(QStringLiteral("^-?[0-9]+$"));
    if (text == QLatin1String(".")) {
        *path = mCurrent;
        return true;
    }
    if (!number.match(text).hasMatch()) {
        *path = mPaths.parse(text);
        return true;
    }
    // A number names a row of the last listing, and nothing else: one that
    // is out of range, negative or too long for any row is no row.
    bool ok = false;
    qint64 const row = text.toLongLong(&ok);
    qint64 const index = ok && row >= 0 ? row - mLast.from : -1;
    if (index < 0 || index >= mLast.rowPaths.size()) {
        fail("noRow", QStringLiteral("No row %1 in the last listing").arg(text), ExitErrorReply);
        return false;
    }
    if (mLast.rowPaths[int(index)].isEmpty()) {
        fail("noRow", QStringLiteral("Row %1 has no path").arg(text), ExitErrorReply);
        return false;
    }
    *path = mLast.rowPaths[int(index)];
    return true;
}

bool Session::await(CMVoidReply const& reply)
{
    switch (mWaiter.wait(reply)) {
    case ReplyWaiter::Outcome::Finished:
        break;
    case ReplyWaiter::Outcome::TimedOut:
        fail("timeout", QStringLiteral("No answer within %1 s").arg(mWaiter.timeoutMs() / 1000), ExitErrorReply);
        return false;
    case ReplyWaiter::Outcome::Terminated:
        mEnded = true;
        [[fallthrough]];
    case ReplyWaiter::Outcome::Interrupted:
        fail("interrupted", QStringLiteral("Interrupted; the answer is no longer awaited"), ExitErrorReply);
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
