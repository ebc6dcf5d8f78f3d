#include "session.h"
#include "dialogview.h"
#include "helptext.h"
#include "interruptlistener.h"
#include "jsonvalue.h"
#include "oauthlogin.h"
#include "playrun.h"
#include "valuerecord.h"

#include "cmglobal.h"
#include "cmroot.h"
#include "httpclientfailurelog.h"
#include "tarnactionreply.h"
#include "tarnclient.h"
#include "tarnedit.h"
#include "tarnmediadata.h"
#include "tarnplaylogicrecords.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QProcess>
#include <QRegularExpression>
#include <algorithm>
#include <limits>

namespace {

qint64 const kLastRow = std::numeric_limits<int>::max();
// A select offers a handful of options; a list longer than this is cut.
qint64 const kLastOption = 999;

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

QJsonArray rowObjects(QStringList const& roles, QVariantList const& rows)
{
    QJsonArray objects;
    for (QVariant const& row : rows)
        objects << presentRoles(roles, row.toList());
    return objects;
}

// Paths of the platform's own that no worker serves (the home screen) are
// for the device to open, not for a listing.
bool browsable(CMPath const& path)
{
    auto* root = CMRootWorker::instance();
    return root->workerFor(path) || root->workerFor(CMPath(path.prefix(), QString()));
}

bool isRowNumber(QString const& text)
{
    static QRegularExpression const number(QStringLiteral("^-?[0-9]+$"));
    return number.match(text).hasMatch();
}

CMPath contextOf(QJsonObject const& roles)
{
    return CMPath::fromEncoded(roles.value(TarnRoles::Context()).toObject().value(TarnRoles::Path()).toString());
}

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

int Session::play(Command const& command)
{
    CMPath path;
    if (!resolve(command.args[0], &path))
        return ExitErrorReply;
    QStringList const roles{TarnRoles::Title(), TarnRoles::Path(), TarnRoles::MediaData()};
    // A row of the last listing plays as listed, as a device plays the row
    // it shows; asking for it again could cost what it stands for (a
    // program hands out tracks at each call).
    TarnRoles row = listedRow(command.args[0]);
    if (row.mediaData().isEmpty()) {
        auto reply = TarnClient::data(path, roles);
        if (!await(reply))
            return ExitErrorReply;
        row = TarnRoles(CMGlobal::rolesValuesToHash(roles, reply.value()));
    }
    QString const text = mPaths.shortText(path);
    TarnMetaData const meta = row.mediaData().metaData();
    // A program has no stream of its own: its play logic picks the tracks.
    if (meta.prePlayPath().isEmpty() && !meta.playLogicPath().isEmpty())
        return playProgram(path, row, command);
    if (command.options.contains(QStringLiteral("tracks")))
        return fail("usage", QStringLiteral("--tracks is for programs; %1 is none").arg(text), ExitUsage);
    // Without a prePlay path there is nothing a player could open; a
    // listing's media data only tells whose it is.
    if (meta.prePlayPath().isEmpty())
        return fail("notPlayable", QStringLiteral("%1 has nothing to play").arg(text), ExitErrorReply);
    // The row takes the player from the program.
    mProgram.reset();

    PlayRun::Outcome const played = PlayRun(mWaiter, mEar).run(row);
    switch (played.status) {
    case PlayRun::Status::Played:
        break;
    case PlayRun::Status::NotPlayed:
        return fail("playback", QStringLiteral("%1 did not play (%2): %3")
                                    .arg(text, played.errorName, explained(played.errorName, played.errorText)),
                    ExitErrorReply);
    case PlayRun::Status::TimedOut:
        return fail("timeout", QStringLiteral("%1 did not play: no answer within %2 s")
                                   .arg(text).arg(mWaiter.timeoutMs() / 1000),
                    ExitErrorReply);
    case PlayRun::Status::Terminated:
        mEnded = true;
        [[fallthrough]];
    case PlayRun::Status::Interrupted:
        return fail("interrupted", QStringLiteral("%1: interrupted").arg(text), ExitErrorReply);
    }
    QJsonObject body{{"path", path.toEncoded()},
                     {"steps", played.steps},
                     {"uri", played.uri},
                     {"state", QStringLiteral("playing")}};
    if (mEar.hears())
        body.insert("events", QJsonArray::fromStringList(played.events));
    mPrinter->print(Printer::Kind::Play, body);
    return ExitOk;
}

int Session::playProgram(CMPath const& path, TarnRoles const& row, Command const& command)
{
    bool ok = false;
    int const tracks = command.option(QStringLiteral("tracks"), QStringLiteral("3")).toInt(&ok);
    if (!ok || tracks < 1)
        return fail("usage", QStringLiteral("--tracks takes a number from 1 on, not '%1'")
                                 .arg(command.option(QStringLiteral("tracks"))),
                    ExitUsage);
    mProgram.reset();
    auto program = std::make_unique<ProgramPlayer>(
        mWaiter, [this](int number, QJsonObject const& track) { mPrinter->trackStarted(number, track); });
    ProgramPlayer::Outcome const played = program->play(row, tracks);
    if (played.status != ProgramPlayer::Status::Done)
        return programFailure(played, mPaths.shortText(path));
    // In the shell the program plays on for the player command; a single
    // command ends, and the person stops it first.
    if (!mInShell)
        program->stop();
    QJsonObject const body{{"path", path.toEncoded()},
                           {"title", row.title().toString()},
                           {"tracks", played.tracks},
                           {"state", program->isPlaying() ? QStringLiteral("playing") : QStringLiteral("stopped")},
                           {"steps", program->steps()}};
    if (program->isPlaying())
        mProgram = std::move(program);
    mPrinter->print(Printer::Kind::Program, body);
    return ExitOk;
}

int Session::programFailure(ProgramPlayer::Outcome const& outcome, QString const& what)
{
    switch (outcome.status) {
    case ProgramPlayer::Status::Done:
        return ExitOk;
    case ProgramPlayer::Status::Refused: {
        // What the refusal offers instead is said with it.
        QJsonObject const offer = outcome.offer;
        mPrinter->error(outcome.errorName, ProgramPlayer::refusalText(outcome, what),
                        offer.isEmpty() ? QJsonObject() : QJsonObject{{"offer", offer}});
        return ExitErrorReply;
    }
    case ProgramPlayer::Status::Failed:
        return fail("playback",
                    QStringLiteral("%1 did not play (%2): %3")
                        .arg(what, outcome.errorName, explained(outcome.errorName, outcome.errorText)),
                    ExitErrorReply);
    case ProgramPlayer::Status::TimedOut:
        return fail("timeout", QStringLiteral("%1: no answer within %2 s").arg(what).arg(mWaiter.timeoutMs() / 1000),
                    ExitErrorReply);
    case ProgramPlayer::Status::Terminated:
        mEnded = true;
        [[fallthrough]];
    case ProgramPlayer::Status::Interrupted:
        return fail("interrupted", QStringLiteral("%1: interrupted").arg(what), ExitErrorReply);
    }
    return ExitErrorReply;
}

int Session::player(Command const& command)
{
    static QHash<QString, QString> const commands{
        {QStringLiteral("next"), TarnPlayLogicRoles::Next()},
        {QStringLiteral("previous"), TarnPlayLogicRoles::Previous()},
        {QStringLiteral("pause"), TarnPlayLogicRoles::Pause()},
        {QStringLiteral("stop"), TarnPlayLogicRoles::Stop()},
        {QStringLiteral("like"), TarnPlayLogicRoles::Like()},
        {QStringLiteral("dislike"), TarnPlayLogicRoles::Dislike()},
    };
    QString const what = command.args[0];
    bool const reads = what == QLatin1String("status") || what == QLatin1String("menu");
    if (!commands.contains(what) && !reads)
        return fail("usage", QStringLiteral("player takes next, previous, pause, stop, like, dislike, status or menu, "
                                            "not '%1'")
                                 .arg(what),
                    ExitUsage);
    if (!mProgram || !mProgram->isPlaying())
        return fail("notPlaying", QStringLiteral("No program plays; start one with play"), ExitErrorReply);
    if (what == QLatin1String("status"))
        return playerStatus();
    if (what == QLatin1String("menu")) {
        QJsonObject track;
        TarnPlayLogicData data;
        if (!currentTrack(&track, &data))
            return ExitErrorReply;
        CMPath const context = data.contextPath();
        if (context.isEmpty())
            return fail("noMenu", QStringLiteral("%1 has no menu").arg(track.value("title").toString()),
                        ExitErrorReply);
        return openMenu(context);
    }

    ProgramPlayer::Outcome const done = mProgram->command(commands.value(what));
    if (done.status != ProgramPlayer::Status::Done)
        return programFailure(done, QStringLiteral("player ") + what);
    QJsonObject body{{"command", what}, {"path", mProgram->playLogic().toEncoded()}};
    if (what == QLatin1String("stop")) {
        mProgram.reset();
        body.insert("state", QStringLiteral("stopped"));
        mPrinter->print(Printer::Kind::Player, body);
        return ExitOk;
    }
    QJsonObject track;
    TarnPlayLogicData data;
    if (!currentTrack(&track, &data))
        return ExitErrorReply;
    body.insert("state", TarnPlayLogicData::stateName(data.state()));
    if (!done.tracks.isEmpty()) {
        body.insert("track", done.tracks.last());
    } else if (what == QLatin1String("next") || what == QLatin1String("previous")) {
        body.insert("track", track);
        body.insert("restarted", true);
    }
    if (what == QLatin1String("like") || what == QLatin1String("dislike")) {
        body.insert("reply", done.answer);
        body.insert("rating", track.value("rating"));
    }
    mPrinter->print(Printer::Kind::Player, body);
    return ExitOk;
}

bool Session::currentTrack(QJsonObject* track, TarnPlayLogicData* data)
{
    ProgramPlayer::Outcome const read = mProgram->read(data);
    if (read.status != ProgramPlayer::Status::Done) {
        programFailure(read, QStringLiteral("player status"));
        return false;
    }
    TarnRoles const roles = data->trackRoles();
    *track = QJsonObject{{"title", roles.title().toString()},
                         {"artist", roles.mediaData().metaData().artist()},
                         {"uri", mProgram->uri()}};
    QString const rating = ProgramPlayer::ratingName(roles);
    if (!rating.isEmpty())
        track->insert("rating", rating);
    return true;
}

int Session::playerStatus()
{
    QJsonObject track;
    TarnPlayLogicData data;
    if (!currentTrack(&track, &data))
        return ExitErrorReply;
    mPrinter->print(Printer::Kind::Player,
                    {{"command", "status"},
                     {"path", mProgram->playLogic().toEncoded()},
                     {"state", TarnPlayLogicData::stateName(data.state())},
                     {"track", track},
                     {"positionMs", mProgram->positionMs()},
                     {"controls", ProgramPlayer::controlNames(TarnPlayLogicControls(data.controls()))}});
    return ExitOk;
}

int Session::menu(Command const& command)
{
    CMPath context;
    QString owner;
    if (command.args.isEmpty()) {
        if (mLast.read.path.isEmpty())
            return fail("noListing", QStringLiteral("Nothing listed yet"), ExitErrorReply);
        QJsonObject const own = jsonFromVariant(mLast.read.roles.__variant()).toObject();
        context = contextOf(own);
        owner = mPaths.shortText(mLast.read.path);
    } else if (isRowNumber(command.args[0])) {
        int index = 0;
        if (!lastRow(command.args[0], &index))
            return ExitErrorReply;
        QJsonObject const row = mLast.rows.at(index).toObject();
        context = contextOf(row);
        owner = QStringLiteral("Row %1").arg(command.args[0]);
    } else {
        CMPath const path = mPaths.parse(command.args[0]);
        auto reply = TarnClient::data(path, {TarnRoles::Context()});
        if (!await(reply))
            return ExitErrorReply;
        context = contextOf(presentRoles({TarnRoles::Context()}, reply.value()));
        owner = mPaths.shortText(path);
    }
    if (context.isEmpty())
        return fail("noMenu", QStringLiteral("%1 has no menu").arg(owner), ExitErrorReply);
    return openMenu(context);
}

int Session::openMenu(CMPath const& context)
{
    Listing listing;
    listing.menu = true;
    Failure failure;
    if (!open(context, 0, mPageSize - 1, CMAllRoles(), true, &listing, &failure))
        return fail(failure.name, failure.message, ExitErrorReply);
    return printListing(listing);
}

int Session::oauth(Command const& command)
{
    QString const flow = command.option(QStringLiteral("flow"), QStringLiteral("browser"));
    if (flow != QLatin1String("browser") && flow != QLatin1String("app"))
        return fail("usage", QStringLiteral("--flow is browser or app, not '%1'").arg(flow), ExitUsage);
    QString const& given = command.args[0];
    QJsonObject row;
    if (isRowNumber(given)) {
        int index = 0;
        if (!lastRow(given, &index))
            return ExitErrorReply;
        row = mLast.rows.at(index).toObject();
    } else {
        // The dialog becomes the last listing, so that the module keeps it
        // while the login runs.
        Listing listing;
        Failure failure;
        if (!open(mPaths.parse(given), 0, mPageSize - 1, CMAllRoles(), true, &listing, &failure))
            return fail(failure.name, failure.message, ExitErrorReply);
        show(listing);
        for (auto const& r : mLast.rows) {
            if (DialogView::isLogin(r.toObject())) {
                row = r.toObject();
                break;
            }
        }
    }
    if (!DialogView::isLogin(row))
        return fail("noLogin",
                    QStringLiteral("%1 is no login on a service's page")
                        .arg(isRowNumber(given) ? QStringLiteral("Row ") + given : given),
                    ExitErrorReply);
    TarnOAuth2Info const login = DialogView::loginOf(row);
    CMPath const dialog = mLast.read.path;
    OAuthLogin const flows([this](CMVoidReply const& reply) { return settle(reply, &mReadFailure); }, mReturnPoints);

    if (flow == QLatin1String("app")) {
        OAuthLogin::Outcome const page = flows.appPage(login.appAuthFlowPath());
        if (page.status != OAuthLogin::Status::Done)
            return fail(mReadFailure.name, mReadFailure.message, ExitErrorReply);
        mPrinter->print(Printer::Kind::Login,
                        {{"path", login.appAuthFlowPath().toEncoded()}, {"flow", flow}, {"url", page.url}});
        return ExitOk;
    }

    bool const openPage = command.options.contains(QStringLiteral("open"));
    OAuthLogin::Outcome const done =
        flows.browser(login.browserAuthFlowPath(), [this, openPage](QString const& url, QString const& back) {
            mPrinter->loginPage(url, back);
            if (openPage && !QProcess::startDetached(QStringLiteral("xdg-open"), {url}))
                mPrinter->errorLine(QStringLiteral("xdg-open could not be started; open the page yourself"));
        });
    switch (done.status) {
    case OAuthLogin::Status::Done:
        break;
    case OAuthLogin::Status::NoReturn:
        return fail("oauth", done.why, ExitErrorReply);
    case OAuthLogin::Status::Failed:
        // Waiting for the browser is the wait a person sees.
        if (!done.url.isEmpty() && done.returned.isEmpty() && mReadFailure.name == QLatin1String("timeout"))
            return fail("timeout",
                        QStringLiteral("The browser did not come back within %1 s").arg(mWaiter.timeoutMs() / 1000),
                        ExitErrorReply);
        return fail(mReadFailure.name, mReadFailure.message, ExitErrorReply);
    }

    QJsonObject body{{"path", login.browserAuthFlowPath().toEncoded()},
                     {"flow", flow},
                     {"url", done.url},
                     {"returned", done.returned}};
    // The module closed the login dialog and sends whoever reads it on to
    // where the login was asked for.
    int status = ExitOk;
    ListingReader::Rows closed;
    if (mReader.open(dialog, 0, 0, {TarnRoles::Path()}, false, &closed) == ListingReader::Status::Ok
        && !closed.redirect.isEmpty()) {
        body.insert("closed", QJsonArray{dialog.toEncoded()});
        status = goTo(closed.redirect, &body);
    }
    mPrinter->print(Printer::Kind::Login, body);
    return status;
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
