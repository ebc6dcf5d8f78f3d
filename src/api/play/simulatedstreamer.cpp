#include "simulatedstreamer.h"

#include "cmrequest.h"
#include "cmworker.h"
#include "playlogicbase.h"
#include "streamerplaylogic.h"
#include "tarnconstants.h"
#include "../replyforward.h"

namespace {

CMReply<QVariant> acknowledged()
{
    CMReply<QVariant> const reply;
    reply.setValue(QVariant());
    return reply;
}

} // namespace

// The play logic's side of the streamer. Apart from the streamer itself,
// since a play logic's pause pauses where the player's pause() toggles.
// Each command is posted to the streamer's thread, never run at once: the
// play logic gives it under the platform streamer's lock.
class SimulatedStreamer::Control : public StreamerControl
{
public:
    explicit Control(SimulatedStreamer* streamer) : m_streamer(streamer) {}

    CMReply<QVariant> play(TarnRoles const& media, QHash<QString, QVariant> const&) override
    {
        return post([=] { m_streamer->playMedia(media); });
    }
    CMReply<QVariant> setNext(TarnRoles const& media, QHash<QString, QVariant> const&) override
    {
        return post([=] { m_streamer->setFollowing(media); });
    }
    CMReply<QVariant> noNext() override { return post([=] { m_streamer->noFollowing(); }); }
    CMReply<QVariant> seek(qint64 ms) override { return post([=] { m_streamer->seek(ms); }); }
    CMReply<QVariant> pause() override { return post([=] { m_streamer->pauseStream(true); }); }
    CMReply<QVariant> resume() override { return post([=] { m_streamer->pauseStream(false); }); }
    CMReply<QVariant> stop() override { return post([=] { m_streamer->stopForPlayLogic(); }); }

    StreamerEvents* listener() const { return events(); }

private:
    CMReply<QVariant> post(std::function<void()> const& command)
    {
        CMReply<QVariant> const reply;
        QMetaObject::invokeMethod(m_streamer, [command, reply] {
            command();
            reply.setValue(QVariant());
        }, Qt::QueuedConnection);
        return reply;
    }

    SimulatedStreamer* m_streamer;
};

SimulatedStreamer::SimulatedStreamer(QObject* parent) : QObject(parent), m_control(std::make_unique<Control>(this)) {}

SimulatedStreamer::~SimulatedStreamer()
{
    StreamerPlayLogic::releasePlatformStreamer(m_control.get());
    if (PlayLogicInterface::playerInstance() == this)
        PlayLogicInterface::setPlayerInstance(nullptr);
    // A play logic would otherwise go on publishing a track nobody plays.
    leavePlayLogic();
}

void SimulatedStreamer::makeActive()
{
    m_platform = true;
    PlayLogicInterface::setPlayerInstance(this);
    StreamerPlayLogic::setPlatformStreamer(m_control.get());
}

StreamerControl* SimulatedStreamer::control() const
{
    return m_control.get();
}

StreamerEvents* SimulatedStreamer::listener() const
{
    return m_control->listener();
}

PlayLogicInterface* SimulatedStreamer::drivingLogic() const
{
    if (!m_driven)
        return nullptr;
    return dynamic_cast<PlayLogicInterface*>(listener());
}

void SimulatedStreamer::play(QList<TarnRoles> const& rows)
{
    leavePlayLogic();
    // The player that plays is the active one; a play logic took that over
    // when it played through this streamer.
    if (m_platform)
        PlayLogicInterface::setPlayerInstance(this);
    if (m_state != TarnPlayLogicData::Stopped) {
        emit step(QStringLiteral("stop for the next track"));
        stopTrack(QString());
    }
    m_rows = rows;
    startRow(0);
}

void SimulatedStreamer::startRow(int index)
{
    m_index = index;
    TarnRoles const row = m_rows.value(index);
    emit step(QStringLiteral("track %1 of %2: %3").arg(index + 1).arg(m_rows.size()).arg(row.title().toString()));
    TarnMetaData const metaData = row.mediaData().metaData();
    if (metaData.prePlayPath().isEmpty() && !metaData.playLogicPath().isEmpty())
        handToPlayLogic(row, metaData.playLogicPath());
    else
        startTrack(row);
}

// A program: its play logic decides the tracks and sends them back here.
// Nothing is published until the first one comes; the rows after it are
// not played.
void SimulatedStreamer::handToPlayLogic(TarnRoles const& row, CMPath const& playLogic)
{
    m_current = Track(row);
    m_following = Track();
    m_streamId = 0;
    m_position = 0;
    int const token = m_current.token = ++m_lastToken;
    emit step(QStringLiteral("play logic %1").arg(playLogic.toEncoded()));
    CMSetDataRequest const request(playLogic, TarnPlayLogicRoles::Play(),
                                   TarnPlayLogicPlayArgs().setMediaRoles(row).__variant());
    request.reply().onFinished(this, [this, token](CMReply<QVariant> const& reply) {
        if (token != m_current.token || !reply.hasError())
            return;
        QString const text = reply.error().messageText();
        failed(TarnPlaylogicErrorName::TarnPlaylogicPrepareFailed(), text.isEmpty() ? reply.error().name() : text);
    });
    CMRoot()->request(request);
}

void SimulatedStreamer::startTrack(TarnRoles const& media)
{
    m_current = Track(media);
    m_following = Track();
    m_followingWanted = false;
    m_streamId = 0;
    m_position = 0;
    setState(TarnPlayLogicData::Preparing);
    ask(m_current, media);
}

void SimulatedStreamer::prepareFollowing(TarnRoles const& media)
{
    m_following = Track(media);
    emit step(QStringLiteral("following track: %1").arg(media.title().toString()));
    ask(m_following, media);
}

void SimulatedStreamer::ask(Track& track, TarnRoles const& request)
{
    track.status = Track::Resolving;
    track.resource = TarnResource();
    CMPath const prePlay = request.mediaData().metaData().prePlayPath();
    if (prePlay.isEmpty()) {
        track.token = 0;
        track.status = Track::Failed;
        track.failure = QStringLiteral("the row has no prePlay path");
        if (&track == &m_current)
            failCurrent(TarnPlaylogicErrorName::TarnPlaylogicPrepareFailed(), track.failure);
        return;
    }
    emit step(QStringLiteral("prePlay %1").arg(prePlay.toEncoded()));
    int const token = track.token = ++m_lastToken;
    CMSetDataRequest const setData(prePlay, TarnRoles::Value(), request.__variant());
    setData.reply().onFinished(this, [this, token](CMReply<QVariant> const& reply) { answered(token, reply); });
    CMRoot()->request(setData);
}

// The answer goes to the track that waits for it, which may have become
// the current one meanwhile; answers nobody waits for any more are dropped.
void SimulatedStreamer::answered(int token, CMReply<QVariant> const& reply)
{
    Track* const track = m_current.token == token ? &m_current : m_following.token == token ? &m_following : nullptr;
    if (!track || track->status != Track::Resolving)
        return;
    if (reply.hasError()) {
        QString const text = reply.error().messageText();
        refused(*track, text.isEmpty() ? reply.error().name() : text);
        return;
    }
    TarnRoles const roles(reply.value().toHash());
    TarnResource const active = roles.mediaData().activeResource();
    if (active.uri().isEmpty()) {
        refused(*track, QStringLiteral("no URI in the answer"));
        return;
    }
    track->roles = roles;
    track->resource = active;
    track->status = Track::Ready;
    if (track == &m_current)
        startStream();
    else
        emit step(QStringLiteral("following track ready: %1").arg(active.uri()));
}

void SimulatedStreamer::refused(Track& track, QString const& text)
{
    emit step(QStringLiteral("prePlay failed: %1").arg(text));
    if (retry(track))
        return;
    track.token = 0;
    track.status = Track::Failed;
    track.failure = text;
    if (&track == &m_current)
        failCurrent(TarnPlaylogicErrorName::TarnPlaylogicPrepareFailed(), text);
}

bool SimulatedStreamer::retry(Track& track)
{
    TarnMediaData mediaData = track.roles.mediaData();
    QVariantList const resources = mediaData.resources();
    ++track.attempt;
    if (track.attempt >= mediaData.metaData().maximumRetryCount() || track.attempt >= resources.size())
        return false;
    TarnResource const fallback(resources.at(track.attempt).toHash());
    emit step(QStringLiteral("retry with resource %1").arg(fallback.uid()));
    TarnRoles roles = track.roles;
    roles.setMediaData(mediaData.setActiveResource(fallback));
    if (&track == &m_current) {
        track.resource = TarnResource();
        m_streamId = 0;
        setState(TarnPlayLogicData::Preparing);
    }
    ask(track, roles);
    return true;
}

void SimulatedStreamer::startStream()
{
    m_streamId = ++m_lastStreamId;
    m_position = 0;
    emit step(QStringLiteral("stream %1: %2").arg(m_streamId).arg(m_current.resource.uri()));
    setState(TarnPlayLogicData::Playing);
    // Another resource of the same track is no new media to the play logic.
    if (m_driven && !m_current.started) {
        m_current.started = true;
        if (StreamerEvents* events = listener())
            events->mediaStarted(m_current.media);
    }
    wantFollowing();
}

void SimulatedStreamer::wantFollowing()
{
    if (m_followingWanted || m_state != TarnPlayLogicData::Playing || !m_current.resource.hasDuration())
        return;
    if (m_current.resource.duration() - m_position > kFollowingLeadMs)
        return;
    m_followingWanted = true;
    if (m_driven) {
        emit step(QStringLiteral("the play logic is asked what follows"));
        if (StreamerEvents* events = listener())
            events->nextMediaWanted();
        return;
    }
    // A row that only its play logic can play is started at the end.
    TarnRoles const next = m_rows.value(m_index + 1);
    if (!next.mediaData().metaData().prePlayPath().isEmpty())
        prepareFollowing(next);
}

void SimulatedStreamer::advance(qint64 ms)
{
    while (m_state == TarnPlayLogicData::Playing) {
        if (!m_current.resource.hasDuration()) {
            m_position += ms;
            return;
        }
        qint64 const duration = m_current.resource.duration();
        qint64 const slice = qMin(ms, qMax<qint64>(0, duration - m_position));
        m_position += slice;
        ms -= slice;
        if (StreamerEvents* events = m_driven ? listener() : nullptr)
            events->playTimeChanged(m_position);
        wantFollowing();
        if (m_position < duration)
            return;
        emit step(QStringLiteral("ended after %1 ms").arg(m_position));
        trackEnded();
        if (ms <= 0)
            return;
    }
}

void SimulatedStreamer::trackEnded()
{
    if (!m_following.isEmpty()) {
        moveToFollowing();
        return;
    }
    if (!m_driven && m_index + 1 < m_rows.size()) {
        stopTrack(QString());
        startRow(m_index + 1);
        return;
    }
    StreamerEvents* const events = m_driven ? listener() : nullptr;
    doStop(TarnPlayLogicStopReason::Service);
    if (events)
        events->mediaEnded();
}

// The track that ended is reported stopped, then the following one plays
// at once when its stream is ready, or as soon as it is.
void SimulatedStreamer::moveToFollowing()
{
    stopTrack(QString());
    if (!m_driven)
        ++m_index;
    m_current = m_following;
    m_following = Track();
    m_followingWanted = false;
    m_streamId = 0;
    m_position = 0;
    emit step(QStringLiteral("on to %1").arg(m_current.media.title().toString()));
    switch (m_current.status) {
    case Track::Ready:
        startStream();
        break;
    case Track::Resolving:
        setState(TarnPlayLogicData::Preparing);
        break;
    case Track::Failed:
        failCurrent(TarnPlaylogicErrorName::TarnPlaylogicPrepareFailed(), m_current.failure);
        break;
    }
}

void SimulatedStreamer::failStream(QString const& errorName)
{
    if (m_state != TarnPlayLogicData::Playing && m_state != TarnPlayLogicData::Paused)
        return;
    failed(errorName, QStringLiteral("stream %1 broke off").arg(m_streamId));
    if (!retry(m_current))
        playLogicFailed(errorName);
}

void SimulatedStreamer::failed(QString const& name, QString const& text)
{
    emit step(QStringLiteral("failed: %1 (%2)").arg(name, text));
    m_error = name;
    m_errorText = text;
    setState(TarnPlayLogicData::Stopped);
}

void SimulatedStreamer::failCurrent(QString const& name, QString const& text)
{
    failed(name, text);
    playLogicFailed(name);
}

// The current track gave up. A play logic hears of it, and what it gave to
// follow goes with it.
void SimulatedStreamer::playLogicFailed(QString const& name)
{
    if (!m_driven)
        return;
    m_driven = false;
    m_following = Track();
    if (StreamerEvents* events = listener())
        events->mediaFailed(name);
}

// Rows or the streamer's end take the streamer from the play logic whose
// media played; to it, its media ended.
void SimulatedStreamer::leavePlayLogic()
{
    if (!m_driven)
        return;
    m_driven = false;
    if (StreamerEvents* events = listener())
        events->mediaEnded();
}

void SimulatedStreamer::setState(int state)
{
    // A failure's name belongs to the stop it caused; kept for errorName()
    // until the player starts on something again.
    if (state != TarnPlayLogicData::Stopped) {
        m_error.clear();
        m_errorText.clear();
    }
    m_state = state;
    publish();
}

void SimulatedStreamer::publish()
{
    TarnPlayLogicData data;
    data.setTrackRoles(m_current.roles).setState(m_state).setPositionMs(m_position);
    if (m_state != TarnPlayLogicData::Preparing && m_streamId > 0)
        data.setStreamId(m_streamId);
    if (m_state == TarnPlayLogicData::Stopped && !m_error.isEmpty())
        data.setError(m_error);
    {
        QMutexLocker lock(&m_dataMutex);
        m_data = data;
    }
    CMPath const path = m_current.roles.mediaData().metaData().playbackStateChangePath();
    if (!path.isEmpty())
        CMRoot()->request(CMSetDataRequest(path, TarnRoles::Value(), data.__variant()));
    QString line = QStringLiteral("state %1").arg(TarnPlayLogicData::stateName(m_state));
    if (!data.error().isEmpty())
        line += QStringLiteral(" (%1)").arg(data.error());
    emit step(line);
    emit stateChanged(data);
}

// Reports the track held as stopped, with errorName as the reason when
// there is one.
void SimulatedStreamer::stopTrack(QString const& errorName)
{
    m_error = errorName;
    m_errorText.clear();
    setState(TarnPlayLogicData::Stopped);
}

TarnPlayLogicData SimulatedStreamer::data() const
{
    if (PlayLogicInterface* logic = drivingLogic())
        return logic->data();
    QMutexLocker lock(&m_dataMutex);
    return m_data;
}

CMReply<QVariant> SimulatedStreamer::onOwnThread(std::function<CMReply<QVariant>()> operation)
{
    CMReply<QVariant> const reply;
    QMetaObject::invokeMethod(this, [operation, reply] { forwardReply(operation(), reply); }, Qt::AutoConnection);
    return reply;
}

CMReply<QVariant> SimulatedStreamer::pause()
{
    return onOwnThread([this] {
        if (PlayLogicInterface* logic = drivingLogic())
            return logic->pause();
        doPause();
        return acknowledged();
    });
}

CMReply<QVariant> SimulatedStreamer::next()
{
    return onOwnThread([this] {
        if (PlayLogicInterface* logic = drivingLogic())
            return logic->next();
        doNext();
        return acknowledged();
    });
}

CMReply<QVariant> SimulatedStreamer::previous()
{
    return onOwnThread([this] {
        // The player interface has no previous; the play logic takes it as
        // a client's command on its path.
        if (auto* logic = dynamic_cast<PlayLogicBase*>(drivingLogic())) {
            CMSetDataRequest const request(logic->path(), TarnPlayLogicRoles::Previous(), QVariant());
            logic->nodes()->request(request);
            return request.reply();
        }
        doPrevious();
        return acknowledged();
    });
}

// A play logic's media stops here at once, so that its state reaches the
// track's state-change path even when the streamer goes right after; the
// play logic publishes the stop as its own command.
CMReply<QVariant> SimulatedStreamer::stop(int reason)
{
    return onOwnThread([this, reason] {
        PlayLogicInterface* const logic = drivingLogic();
        doStop(reason);
        return logic ? logic->stop(reason) : acknowledged();
    });
}

void SimulatedStreamer::doPause()
{
    if (m_state == TarnPlayLogicData::Playing) {
        emit step(QStringLiteral("pause at %1 ms").arg(m_position));
        setState(TarnPlayLogicData::Paused);
    } else if (m_state == TarnPlayLogicData::Paused) {
        emit step(QStringLiteral("go on at %1 ms").arg(m_position));
        setState(TarnPlayLogicData::Playing);
    }
}

void SimulatedStreamer::doNext()
{
    if (!m_following.isEmpty()) {
        moveToFollowing();
    } else if (m_index + 1 < m_rows.size()) {
        // The track that ends is reported before the next one prepares.
        stopTrack(QString());
        startRow(m_index + 1);
    } else {
        doStop(TarnPlayLogicStopReason::Service);
    }
}

void SimulatedStreamer::doPrevious()
{
    if (m_current.isEmpty())
        return;
    if (m_position > TarnPreviousTrackTimeLimit() || m_index <= 0) {
        emit step(QStringLiteral("back to the start of the track"));
        m_position = 0;
        m_followingWanted = false;
        m_following = Track();
        return;
    }
    stopTrack(QString());
    startRow(m_index - 1);
}

void SimulatedStreamer::doStop(int reason)
{
    m_current.token = 0;
    m_following = Track();
    m_driven = false;
    if (m_current.isEmpty())
        return;
    bool const byUser = reason == TarnPlayLogicStopReason::User;
    emit step(byUser ? QStringLiteral("stop by the user") : QStringLiteral("stop"));
    stopTrack(byUser ? TarnPlaylogicErrorName::TarnPlaylogicUserStop() : QString());
    m_current = Track();
    m_streamId = 0;
    m_rows.clear();
    m_index = -1;
    QMutexLocker lock(&m_dataMutex);
    m_data = TarnPlayLogicData().setState(TarnPlayLogicData::Stopped);
}

void SimulatedStreamer::playMedia(TarnRoles const& media)
{
    if (m_state != TarnPlayLogicData::Stopped) {
        emit step(QStringLiteral("stop for the play logic's track"));
        stopTrack(QString());
    }
    m_rows.clear();
    m_index = -1;
    m_driven = true;
    emit step(QStringLiteral("play logic's track: %1").arg(media.title().toString()));
    startTrack(media);
}

void SimulatedStreamer::setFollowing(TarnRoles const& media)
{
    if (m_driven)
        prepareFollowing(media);
}

void SimulatedStreamer::noFollowing()
{
    if (m_driven)
        m_following = Track();
}

void SimulatedStreamer::seek(qint64 ms)
{
    if (!m_driven || (m_state != TarnPlayLogicData::Playing && m_state != TarnPlayLogicData::Paused))
        return;
    m_position = m_current.resource.hasDuration() ? qMin(ms, m_current.resource.duration()) : ms;
    emit step(QStringLiteral("seek to %1 ms").arg(m_position));
}

void SimulatedStreamer::pauseStream(bool paused)
{
    if (!m_driven)
        return;
    int const from = paused ? TarnPlayLogicData::Playing : TarnPlayLogicData::Paused;
    if (m_state != from)
        return;
    doPause();
    if (StreamerEvents* events = listener())
        events->pausedChanged(paused);
}

void SimulatedStreamer::stopForPlayLogic()
{
    if (m_driven)
        doStop(TarnPlayLogicStopReason::Service);
}
