#include "session.h"
#include "playrun.h"

#include "cmglobal.h"
#include "tarnclient.h"
#include "tarnmediadata.h"
#include "tarnplaylogicrecords.h"

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
