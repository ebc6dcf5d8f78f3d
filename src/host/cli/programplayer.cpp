#include "programplayer.h"

#include "simulatedstreamer.h"
#include "tarnactionreply.h"
#include "tarnclient.h"
#include "tarnmediadata.h"
#include "tarnplaylogicrecords.h"

#include <QTimer>

namespace {

// Room for the stop of a program to reach the module and the cloud before
// the streamer goes.
int const kStopRoomMs = 200;

QString textOf(QVariant const& value)
{
    return value.canConvert<TrString>() ? value.value<TrString>().toString() : value.toString();
}

// A refusal may come with something to do instead: at the skip limit, a
// subscription, whose link is the one resource of its media data.
QJsonObject offerOf(CMError const& error)
{
    QVariant const answer = error.value(CMError::ActionReply());
    if (!answer.isValid())
        return QJsonObject();
    TarnRoles const offer = TarnActionReply(TarnHash::toHash(answer)).result();
    QVariantList const resources = offer.mediaData().resources();
    return {{"title", offer.title().toString()},
            {"description", textOf(offer.value(TarnRoles::Description()))},
            {"url", resources.isEmpty() ? QString() : TarnResource(TarnHash::toHash(resources.first())).uri()}};
}

} // namespace

ProgramPlayer::ProgramPlayer(ReplyWaiter const& waiter, Started started)
    : mWaiter(waiter), mStarted(std::move(started)), mStreamer(std::make_unique<SimulatedStreamer>())
{
    mStreamer->makeActive();
    QObject::connect(mStreamer.get(), &SimulatedStreamer::step, [this](QString const& step) { mSteps << step; });
    QObject::connect(mStreamer.get(), &SimulatedStreamer::stateChanged,
                     [this](TarnPlayLogicData const& data) { noteState(data); });
}

ProgramPlayer::~ProgramPlayer()
{
    stop();
}

void ProgramPlayer::stop()
{
    if (!isPlaying())
        return;
    mStreamer->stop(TarnPlayLogicStopReason::User);
    CMReply<QVariant> const room;
    QTimer::singleShot(kStopRoomMs, [room] { room.setValue(QVariant()); });
    mWaiter.wait(room);
}

void ProgramPlayer::noteState(TarnPlayLogicData const& data)
{
    // A stream starts once; playing again after a pause is no new track.
    if (data.state() != TarnPlayLogicData::Playing || mStreams.contains(data.streamId()))
        return;
    mStreams.insert(data.streamId());
    QJsonObject const track = trackObject(mStreamer->trackRoles(), mStreamer->uri());
    mTracks << track;
    if (mStarted)
        mStarted(mTracks.size(), track);
}

bool ProgramPlayer::isPlaying() const
{
    return mStreamer->state() != TarnPlayLogicData::Stopped;
}

QString ProgramPlayer::uri() const
{
    return isPlaying() ? mStreamer->uri() : QString();
}

qint64 ProgramPlayer::positionMs() const
{
    return mStreamer->positionMs();
}

ReplyWaiter::Outcome ProgramPlayer::waitUntil(std::function<bool()> const& done) const
{
    if (done())
        return ReplyWaiter::Outcome::Finished;
    CMReply<QVariant> const reached;
    // The connections end with the wait. The check runs once the streamer's
    // turn is over: a play logic's next track stops the one before and
    // starts itself in one turn, and the stop between them is no end.
    QObject scope;
    auto const check = [&reached, &done] {
        if (!reached.isFinished() && done())
            reached.setValue(QVariant());
    };
    QObject::connect(mStreamer.get(), &SimulatedStreamer::stateChanged, &scope, check, Qt::QueuedConnection);
    QObject::connect(mStreamer.get(), &SimulatedStreamer::step, &scope, check, Qt::QueuedConnection);
    return mWaiter.wait(reached);
}

ProgramPlayer::Outcome ProgramPlayer::failure(ReplyWaiter::Outcome waited) const
{
    Outcome outcome;
    switch (waited) {
    case ReplyWaiter::Outcome::Finished:
        break;
    case ReplyWaiter::Outcome::TimedOut:
        outcome.status = Status::TimedOut;
        break;
    case ReplyWaiter::Outcome::Interrupted:
        outcome.status = Status::Interrupted;
        break;
    case ReplyWaiter::Outcome::Terminated:
        outcome.status = Status::Terminated;
        break;
    }
    return outcome;
}

ProgramPlayer::Outcome ProgramPlayer::play(TarnRoles const& row, int tracks)
{
    mPlayLogic = row.mediaData().metaData().playLogicPath();
    int const before = mTracks.size();
    // Until the first track comes, a stop is the play logic's refusal.
    mStreamer->play(row);
    ReplyWaiter::Outcome waited = waitUntil([&] {
        return mTracks.size() > before || !mStreamer->errorName().isEmpty();
    });
    Outcome outcome = failure(waited);
    while (outcome.status == Status::Done && isPlaying() && mTracks.size() - before < tracks)
        outcome = playOut();
    return startedSince(before, outcome, outcome.status == Status::Done);
}

ProgramPlayer::Outcome ProgramPlayer::playOut()
{
    TarnResource const resource = mStreamer->resource();
    // A live stream never ends; the program stays with it.
    if (!resource.hasDuration())
        return Outcome();
    qint64 const left = resource.duration() - mStreamer->positionMs();
    qint64 const lead = qMin(left, SimulatedStreamer::kFollowingLeadMs);
    mStreamer->advance(left - lead);
    // A play logic that gives nothing to follow lets the program end here:
    // the wait ends with the time-out, and the track plays out alone.
    ReplyWaiter::Outcome const waited = waitUntil([this] { return mStreamer->hasFollowing(); });
    if (waited != ReplyWaiter::Outcome::Finished && waited != ReplyWaiter::Outcome::TimedOut)
        return failure(waited);
    int const before = mTracks.size();
    mStreamer->advance(lead);
    // The following track plays at once when it is ready, or as soon as it
    // is; one that can't be played stops the program.
    return failure(waitUntil([&] { return mTracks.size() > before || !isPlaying(); }));
}

QJsonObject ProgramPlayer::trackObject(TarnRoles const& roles, QString const& uri)
{
    return {{"title", roles.title().toString()}, {"artist", roles.mediaData().metaData().artist()}, {"uri", uri}};
}

ProgramPlayer::Outcome ProgramPlayer::settle(CMReply<QVariant> const& reply) const
{
    Outcome const outcome = failure(mWaiter.wait(reply));
    if (outcome.status != Status::Done)
        return outcome;
    return answerOf(reply);
}

QString ProgramPlayer::refusalText(Outcome const& refused, QString const& what)
{
    QJsonObject const offer = refused.offer;
    QString message = refused.errorText.isEmpty() ? QStringLiteral("%1 was refused").arg(what) : refused.errorText;
    if (!offer.isEmpty()) {
        message += QStringLiteral(". %1: %2").arg(offer.value("title").toString(), offer.value("description").toString());
        if (!offer.value("url").toString().isEmpty())
            message += QStringLiteral(" (%1)").arg(offer.value("url").toString());
    }
    return message;
}

ProgramPlayer::Outcome ProgramPlayer::answerOf(CMReply<QVariant> const& reply)
{
    Outcome outcome;
    if (reply.hasError()) {
        CMError const error = reply.error();
        outcome.status = Status::Refused;
        outcome.errorName = error.name().isEmpty() ? QStringLiteral("Error") : error.name();
        outcome.errorText = error.messageText();
        outcome.offer = offerOf(error);
        return outcome;
    }
    TarnRoles const said = TarnActionReply(TarnHash::toHash(reply.value())).result();
    if (!said.isEmpty())
        outcome.answer = {{"title", said.title().toString()},
                          {"description", textOf(said.value(TarnRoles::Description()))}};
    return outcome;
}

ProgramPlayer::Outcome ProgramPlayer::command(QString const& role)
{
    int const before = mTracks.size();
    QVariant const value =
        role == TarnPlayLogicRoles::Stop() ? QVariant(int(TarnPlayLogicStopReason::User)) : QVariant();
    Outcome outcome = settle(TarnClient::setData(mPlayLogic, role, value));
    if (outcome.status != Status::Done)
        return outcome;
    // A play logic publishes a new track as preparing before it answers; the
    // streamer hears of it on a turn of its own. A track that went back to
    // its start stays as it was.
    TarnPlayLogicData published;
    Outcome const read = this->read(&published);
    if (read.status != Status::Done)
        return read;
    bool const preparing = published.state() == TarnPlayLogicData::Preparing;
    if (preparing) {
        Outcome const waited = failure(waitUntil([&] { return mTracks.size() > before || !isPlaying(); }));
        if (waited.status != Status::Done)
            return waited;
    }
    return startedSince(before, outcome, preparing);
}

// The tracks that started since `before`; none where one was expected is the
// streamer's failure, with its reason.
ProgramPlayer::Outcome ProgramPlayer::startedSince(int before, Outcome outcome, bool newTrackExpected) const
{
    if (newTrackExpected && mTracks.size() == before) {
        outcome.status = Status::Failed;
        outcome.errorName = mStreamer->errorName();
        outcome.errorText = mStreamer->errorText();
    }
    for (int i = before; i < mTracks.size(); ++i)
        outcome.tracks << mTracks[i];
    return outcome;
}

ProgramPlayer::Outcome ProgramPlayer::read(TarnPlayLogicData* data) const
{
    auto const reply = TarnClient::data(mPlayLogic, {TarnRoles::Value()});
    Outcome outcome = failure(mWaiter.wait(reply));
    if (outcome.status != Status::Done)
        return outcome;
    if (reply.hasError()) {
        outcome.status = Status::Refused;
        outcome.errorName = reply.error().name();
        outcome.errorText = reply.error().messageText();
        return outcome;
    }
    *data = TarnPlayLogicData(TarnHash::toHash(reply.value().value(0)));
    return outcome;
}

QJsonArray ProgramPlayer::controlNames(TarnPlayLogicControls const& controls)
{
    QJsonArray names;
    auto const put = [&names](bool on, char const* name) {
        if (on)
            names << QString::fromLatin1(name);
    };
    put(controls.pause(), "pause");
    put(controls.next_(), "next");
    put(controls.previous(), "previous");
    put(controls.seekTime(), "seekTime");
    put(controls.like(), "like");
    put(controls.dislike(), "dislike");
    return names;
}

QString ProgramPlayer::ratingName(TarnRoles const& track)
{
    TarnMetaData const meta = track.mediaData().metaData();
    if (!meta.__contains(TarnMetaData::Rating()))
        return QString();
    switch (TarnRating(meta.rating()).threeStateValue()) {
    case TarnRatingThreeStateValues::Positive:
        return QStringLiteral("positive");
    case TarnRatingThreeStateValues::Negative:
        return QStringLiteral("negative");
    case TarnRatingThreeStateValues::Neutral:
        break;
    }
    return QStringLiteral("neutral");
}
