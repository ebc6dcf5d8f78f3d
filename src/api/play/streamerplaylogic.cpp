#include "streamerplaylogic.h"

#include "../replyforward.h"
#include "../tarnlog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

#include <mutex>

namespace {

// The platform's streamer and the lock under which it is used. Recursive,
// so that a streamer that runs a command at once may call back.
std::recursive_mutex platformMutex;
StreamerControl* platformStreamer = nullptr;

} // namespace

StreamerPlayLogic::StreamerPlayLogic(CMNodes* nodes, CMPath const& path) : PlayLogicBase(nodes, path) {}

StreamerPlayLogic::~StreamerPlayLogic()
{
    std::lock_guard<std::recursive_mutex> lock(platformMutex);
    if (m_streamer)
        m_streamer->releaseEvents(this);
    if (platformStreamer)
        platformStreamer->releaseEvents(this);
}

void StreamerPlayLogic::setStreamer(StreamerControl* streamer)
{
    if (m_streamer)
        m_streamer->releaseEvents(this);
    ++m_generation;
    m_streamer = streamer;
    if (m_streamer)
        m_streamer->setEvents(this);
}

StreamerControl* StreamerPlayLogic::streamer() const
{
    std::lock_guard<std::recursive_mutex> lock(platformMutex);
    return m_streamer ? m_streamer : platformStreamer;
}

void StreamerPlayLogic::setPlatformStreamer(StreamerControl* streamer)
{
    std::lock_guard<std::recursive_mutex> lock(platformMutex);
    // Play logics that took the old one would otherwise hear from a
    // streamer they no longer command, and it could outlive them.
    if (platformStreamer && platformStreamer != streamer)
        platformStreamer->setEvents(nullptr);
    platformStreamer = streamer;
}

void StreamerPlayLogic::releasePlatformStreamer(StreamerControl* streamer)
{
    std::lock_guard<std::recursive_mutex> lock(platformMutex);
    if (platformStreamer == streamer)
        platformStreamer = nullptr;
}

bool StreamerPlayLogic::withStreamer(std::function<void(StreamerControl*)> const& command) const
{
    if (m_streamer) {
        command(m_streamer);
        return true;
    }
    std::lock_guard<std::recursive_mutex> lock(platformMutex);
    if (!platformStreamer)
        return false;
    command(platformStreamer);
    return true;
}

CMError StreamerPlayLogic::noStreamerError()
{
    return CMError(QStringLiteral("noStreamer"), TrString(QStringLiteral("The play logic has no streamer")));
}

CMReply<QVariant> StreamerPlayLogic::send(char const* what,
                                          std::function<CMReply<QVariant>(StreamerControl*)> const& command)
{
    CMReply<QVariant> reply;
    bool const sent = withStreamer([&](StreamerControl* streamer) {
        LOG4CPLUS_DEBUG(logger, "Play logic " << path() << " to streamer: " << what);
        reply = command(streamer);
    });
    if (!sent) {
        LOG4CPLUS_WARN(logger, "Play logic " << path() << " has no streamer for " << what);
        reply.setError(noStreamerError());
    }
    return reply;
}

CMReply<QVariant> StreamerPlayLogic::sendPlayCommand(TarnRoles const& roles, QHash<QString, QVariant> const& options)
{
    // Published before the streamer is told, outside the streamer's lock:
    // watchers of the path run on the change.
    if (streamer()) {
        ++m_generation;
        m_failure.clear();
        setPlayTime(0);
        TarnPlayLogicData preparing = playLogicEntries();
        preparing.setTrackRoles(translateTrackRoles(roles)).setState(TarnPlayLogicData::Preparing);
        setData(preparing);
    }
    return send("play", [&](StreamerControl* s) {
        // The platform's streamer may have played for another play logic
        // since; what it reports now is this one's.
        s->setEvents(this);
        return s->play(roles, options);
    });
}

CMReply<QVariant> StreamerPlayLogic::sendSetNextMediaCommand(TarnRoles const& roles,
                                                             QHash<QString, QVariant> const& options)
{
    return send("setNext", [&](StreamerControl* s) { return s->setNext(roles, options); });
}

CMReply<QVariant> StreamerPlayLogic::sendNoNextMediaCommand()
{
    return send("noNext", [](StreamerControl* s) { return s->noNext(); });
}

CMReply<QVariant> StreamerPlayLogic::sendSeekTimeCommand(long long ms)
{
    // At once, not when the streamer reports it: a decision that reads the
    // play time right after (a second previous) must see the seek.
    return send("seek", [this, ms](StreamerControl* s) {
        setPlayTime(long(ms));
        return s->seek(ms);
    });
}

void StreamerPlayLogic::forget()
{
    ++m_generation;
    m_playingMedia = TarnRoles();
    m_failure.clear();
}

void StreamerPlayLogic::stopInternal(CMSetDataRequest const& request)
{
    forget();
    withStreamer([](StreamerControl* s) { s->stop(); });
    PlayLogicBase::stopInternal(request);
}

void StreamerPlayLogic::pauseInternal(CMSetDataRequest const& request)
{
    int const state = data().state();
    if (state == TarnPlayLogicData::Playing)
        forwardReply(send("pause", [](StreamerControl* s) { return s->pause(); }), request.reply());
    else if (state == TarnPlayLogicData::Paused)
        forwardReply(send("resume", [](StreamerControl* s) { return s->resume(); }), request.reply());
    else
        request.reply().setError(
            CMError(QStringLiteral("notPlaying"), TrString(QStringLiteral("Nothing plays that could pause"))));
}

void StreamerPlayLogic::seekTimeInternal(CMSetDataRequest const& request)
{
    bool ok = false;
    qlonglong const ms = request.value().toLongLong(&ok);
    if (!ok || ms < 0) {
        request.reply().setError(CMError::invalidArgument(
            QStringLiteral("A seek takes a position in milliseconds"), TarnJson::serialize(request.value())));
        return;
    }
    forwardReply(sendSeekTimeCommand(ms), request.reply());
}

void StreamerPlayLogic::prepareNextMedia()
{
    sendNoNextMediaCommand();
}

TarnRoles StreamerPlayLogic::translateTrackRoles(TarnRoles const& roles)
{
    return roles;
}

TarnPlayLogicData StreamerPlayLogic::mediaPlaybackStarted(TarnRoles const&, TarnRoles const&)
{
    TarnPlayLogicData started = data();
    TarnPlayLogicControls controls;
    controls.setPause(true).setSeekTime(true).setPlayMode(playModesSupported());
    started.insert(TarnPlayLogicDataKey::Controls(), controls.__variant());
    return started;
}

void StreamerPlayLogic::playbackEnded()
{
    TarnPlayLogicData stopped = stoppedData(m_failure);
    // A failure names the media that failed; an end leaves nothing held.
    if (!m_failure.isEmpty())
        stopped.setTrackRoles(data().trackRoles());
    m_playingMedia = TarnRoles();
    m_failure.clear();
    setPlayTime(0);
    setData(stopped);
}

void StreamerPlayLogic::report(std::function<void()> work)
{
    int const generation = m_generation.load();
    QMetaObject::invokeMethod(this, [this, generation, work = std::move(work)] {
        if (generation == m_generation.load())
            work();
    }, Qt::QueuedConnection);
}

void StreamerPlayLogic::mediaStarted(TarnRoles const& media)
{
    report([this, media] {
        TarnRoles const previous = m_playingMedia;
        m_playingMedia = media;
        m_failure.clear();
        setPlayTime(0);
        TarnPlayLogicData started = mediaPlaybackStarted(previous, media);
        started.setTrackRoles(translateTrackRoles(media))
            .setState(TarnPlayLogicData::Playing)
            .setStreamId(++m_streamId)
            .setPositionMs(0);
        setData(started);
    });
}

void StreamerPlayLogic::nextMediaWanted()
{
    report([this] { prepareNextMedia(); });
}

void StreamerPlayLogic::pausedChanged(bool paused)
{
    report([this, paused] {
        TarnPlayLogicData changed = data();
        if (changed.state() != TarnPlayLogicData::Playing && changed.state() != TarnPlayLogicData::Paused)
            return;
        changed.setState(paused ? TarnPlayLogicData::Paused : TarnPlayLogicData::Playing).setPositionMs(playTime());
        setData(changed);
    });
}

// Not published: a streamer reports its position many times a second, and
// each publication makes every watcher read the whole data again. The data
// carries the position of its last change.
void StreamerPlayLogic::playTimeChanged(qint64 ms)
{
    report([this, ms] { setPlayTime(long(ms)); });
}

void StreamerPlayLogic::mediaEnded()
{
    report([this] { playbackEnded(); });
}

void StreamerPlayLogic::mediaFailed(QString const& errorName)
{
    report([this, errorName] {
        LOG4CPLUS_WARN(logger, "Play logic " << path() << ": the streamer failed with " << errorName.toStdString());
        m_failure = errorName;
        playbackEnded();
    });
}
