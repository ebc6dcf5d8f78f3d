#include "webplayer.h"

#include "programplayer.h"
#include "webapi.h"

#include "tarnclient.h"
#include "tarnmediadata.h"
#include "tarnplaylogicrecords.h"

#include <QTimer>

namespace {

// How long the play logic may take to give what follows a track that
// ended, before the track ends without it.
int const kFollowingWaitMs = 3000;
// The words of what the cloud heard that a page shows: a program plays on
// for hours, and four words a track would make a line no one reads.
int const kHeardKept = 10;

} // namespace

WebPlayer::WebPlayer(CloudEar const& ear, Publish publish) : mEar(ear), mPublish(std::move(publish))
{
    mStreamer.makeActive();
    connect(&mStreamer, &SimulatedStreamer::stateChanged, this, &WebPlayer::stateChanged);
    // The module reports an event after the player's state changed, so the
    // page hears of it when the cloud does, not when it next asks.
    mEar.listen([this](QString const& word) {
        QMetaObject::invokeMethod(this, [this, word] { heardOnCloud(word); }, Qt::QueuedConnection);
    });
}

WebPlayer::~WebPlayer()
{
    mEar.listen(nullptr);
    mStreamer.stop(TarnPlayLogicStopReason::User);
}

void WebPlayer::heardOnCloud(QString const& word)
{
    mHeard << word;
    if (mHeard.size() > kHeardKept)
        mHeard.removeFirst();
    publishHeard();
}

void WebPlayer::publishHeard()
{
    if (mEar.hears())
        mPublish({{"command", QStringLiteral("heard")}, {"events", QJsonArray::fromStringList(mHeard)}});
}

void WebPlayer::play(CMPath const& path, TarnRoles const& row, Answer const& answer)
{
    TarnMetaData const meta = row.mediaData().metaData();
    if (meta.prePlayPath().isEmpty() && meta.playLogicPath().isEmpty()) {
        answer(WebApi::failure(QStringLiteral("notPlayable"),
                               QStringLiteral("%1 has nothing to play").arg(row.title().toString())));
        return;
    }
    mPath = path;
    mPlayLogic = meta.prePlayPath().isEmpty() ? meta.playLogicPath() : CMPath();
    mHeard.clear();
    publishHeard();
    mStreamer.play(row);
    answer({{"path", path.toEncoded()}, {"title", row.title().toString()}, {"state", QStringLiteral("preparing")}});
}

QJsonObject WebPlayer::trackNow() const
{
    TarnRoles const roles = mStreamer.trackRoles();
    QJsonObject track = ProgramPlayer::trackObject(roles, mStreamer.uri());
    QString const rating = ProgramPlayer::ratingName(roles);
    if (!rating.isEmpty())
        track.insert("rating", rating);
    QString const image = roles.value(TarnRoles::Icon()).toString();
    if (!image.isEmpty())
        track.insert("image", image);
    return track;
}

// Each state of the streamer becomes the page's order: a new stream to
// play, a pause, going on, a stop (with the module's words when it failed).
void WebPlayer::stateChanged(TarnPlayLogicData const& data)
{
    QJsonObject event{{"path", playingPath().toEncoded()},
                      {"state", TarnPlayLogicData::stateName(data.state())}};
    switch (data.state()) {
    case TarnPlayLogicData::Playing:
        if (data.streamId() != mShown) {
            mShown = data.streamId();
            mEnding = false;
            event.insert("command", QStringLiteral("play"));
            event.insert("stream", mShown);
            event.insert("track", trackNow());
            event.insert("live", !mStreamer.resource().hasDuration());
            event.insert("program", isProgram());
        } else {
            event.insert("command", QStringLiteral("resume"));
        }
        break;
    case TarnPlayLogicData::Paused:
        event.insert("command", QStringLiteral("pause"));
        break;
    case TarnPlayLogicData::Preparing:
        event.insert("command", QStringLiteral("prepare"));
        event.insert("track", ProgramPlayer::trackObject(data.trackRoles(), QString()));
        break;
    default: {
        mShown = 0;
        event.insert("command", QStringLiteral("stop"));
        QString const error = data.error();
        if (!error.isEmpty() && error != TarnPlaylogicErrorName::TarnPlaylogicUserStop())
            event.insert("error", QJsonObject{{"name", error}, {"message", mStreamer.errorText()}});
        break;
    }
    }
    mPublish(event);
}

void WebPlayer::command(QString const& what, Answer const& answer)
{
    static QHash<QString, QString> const logicRoles{
        {QStringLiteral("next"), TarnPlayLogicRoles::Next()},
        {QStringLiteral("previous"), TarnPlayLogicRoles::Previous()},
        {QStringLiteral("like"), TarnPlayLogicRoles::Like()},
        {QStringLiteral("dislike"), TarnPlayLogicRoles::Dislike()},
    };
    if (mStreamer.state() == TarnPlayLogicData::Stopped) {
        answer(WebApi::failure(QStringLiteral("notPlaying"),
                               QStringLiteral("Nothing plays; start something with play")));
        return;
    }
    if (logicRoles.contains(what)) {
        if (!isProgram()) {
            answer(WebApi::failure(QStringLiteral("usage"), QStringLiteral("%1 is for programs").arg(what)));
            return;
        }
        playLogicCommand(what, logicRoles.value(what), answer);
        return;
    }
    if (what != QLatin1String("pause") && what != QLatin1String("stop")) {
        answer(WebApi::failure(
            QStringLiteral("usage"),
            QStringLiteral("player takes next, previous, pause, stop, like or dislike, not '%1'").arg(what)));
        return;
    }
    CMReply<QVariant> const done =
        what == QLatin1String("pause") ? mStreamer.pause() : mStreamer.stop(TarnPlayLogicStopReason::User);
    QString const path = playingPath().toEncoded();
    done.onFinished(this, [this, what, path, answer](CMReply<QVariant> const& reply) {
        if (reply.hasError()) {
            answer(WebApi::failure(reply.error().name(), reply.error().messageText()));
            return;
        }
        answer({{"command", what}, {"path", path}, {"state", TarnPlayLogicData::stateName(mStreamer.state())}});
    });
}

void WebPlayer::playLogicCommand(QString const& what, QString const& role, Answer const& answer)
{
    CMPath const logic = mPlayLogic;
    TarnClient::setData(logic, role, QVariant()).onFinished(this, [this, what, logic, answer](CMReply<QVariant> const& reply) {
        ProgramPlayer::Outcome const outcome = ProgramPlayer::answerOf(reply);
        if (outcome.status != ProgramPlayer::Status::Done) {
            QJsonObject error{{"name", outcome.errorName},
                              {"message", ProgramPlayer::refusalText(outcome, QStringLiteral("player ") + what)}};
            if (!outcome.offer.isEmpty())
                error.insert("offer", outcome.offer);
            answer({{"error", error}});
            return;
        }
        // The rating is the track's as the play logic publishes it now.
        TarnClient::data(logic, {TarnRoles::Value()}).onFinished(this, [what, logic, outcome, answer](CMReply<QVariantList> const& read) {
            QJsonObject body{{"command", what}, {"path", logic.toEncoded()}};
            if (!read.hasError()) {
                TarnPlayLogicData const data(TarnHash::toHash(read.value().value(0)));
                body.insert("state", TarnPlayLogicData::stateName(data.state()));
                QString const rating = ProgramPlayer::ratingName(data.trackRoles());
                if (!rating.isEmpty())
                    body.insert("rating", rating);
                body.insert("controls", ProgramPlayer::controlNames(TarnPlayLogicControls(data.controls())));
            }
            if (!outcome.answer.isEmpty())
                body.insert("reply", outcome.answer);
            answer(body);
        });
    });
}

void WebPlayer::report(QString const& state, int stream, Answer const& answer)
{
    QJsonObject const heard{{"state", TarnPlayLogicData::stateName(mStreamer.state())}};
    // A report about a stream the page was told to leave is news no more.
    if (stream != mShown || mShown == 0) {
        answer(heard);
        return;
    }
    int const now = mStreamer.state();
    if (state == QLatin1String("paused") && now == TarnPlayLogicData::Playing)
        mStreamer.pause();
    else if (state == QLatin1String("playing") && now == TarnPlayLogicData::Paused)
        mStreamer.pause();
    else if (state == QLatin1String("ended") && now == TarnPlayLogicData::Playing)
        endTrack();
    else if (state == QLatin1String("failed"))
        mStreamer.failStream();
    else if (state != QLatin1String("playing") && state != QLatin1String("paused") && state != QLatin1String("ended")) {
        answer(WebApi::failure(QStringLiteral("usage"),
                               QStringLiteral("a report is playing, paused, ended or failed, not '%1'").arg(state)));
        return;
    }
    answer(heard);
}

void WebPlayer::endTrack()
{
    TarnResource const resource = mStreamer.resource();
    // A live stream has no end; the page plays its sound over and over.
    if (!resource.hasDuration() || mEnding)
        return;
    mEnding = true;
    qint64 const left = resource.duration() - mStreamer.positionMs();
    qint64 const lead = qMin(left, SimulatedStreamer::kFollowingLeadMs);
    mStreamer.advance(left - lead);
    int const stream = mShown;
    auto finish = [this, stream, lead] {
        if (mShown == stream && mEnding)
            mStreamer.advance(lead);
    };
    if (!isProgram() || mStreamer.hasFollowing()) {
        finish();
        return;
    }
    // The play logic answers the wish for what follows on a turn of its own.
    auto* waiting = new QTimer(this);
    auto const started = std::make_shared<int>(0);
    connect(waiting, &QTimer::timeout, this, [this, waiting, started, finish] {
        *started += 20;
        if (!mStreamer.hasFollowing() && *started < kFollowingWaitMs)
            return;
        waiting->deleteLater();
        waiting->stop();
        finish();
    });
    waiting->start(20);
}

QJsonObject WebPlayer::status() const
{
    QJsonObject body{{"command", QStringLiteral("status")},
                     {"path", playingPath().toEncoded()},
                     {"state", TarnPlayLogicData::stateName(mStreamer.state())}};
    if (mStreamer.state() != TarnPlayLogicData::Stopped) {
        body.insert("track", trackNow());
        body.insert("stream", mShown);
        // What a page that comes anew needs to take up the stream as the
        // "play" event would have told it.
        body.insert("live", !mStreamer.resource().hasDuration());
        body.insert("program", isProgram());
    }
    if (mEar.hears())
        body.insert("events", QJsonArray::fromStringList(mHeard));
    return body;
}
