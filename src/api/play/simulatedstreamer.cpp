#include "simulatedstreamer.h"

#include "cmrequest.h"
#include "cmworker.h"

namespace {

QString stateName(int state)
{
    switch (state) {
    case TarnPlayLogicData::Preparing:
        return QStringLiteral("preparing");
    case TarnPlayLogicData::Playing:
        return QStringLiteral("playing");
    case TarnPlayLogicData::Paused:
        return QStringLiteral("paused");
    default:
        return QStringLiteral("stopped");
    }
}

} // namespace

SimulatedStreamer::SimulatedStreamer(QObject* parent) : QObject(parent) {}

SimulatedStreamer::~SimulatedStreamer()
{
    if (PlayLogicInterface::playerInstance() == this)
        PlayLogicInterface::setPlayerInstance(nullptr);
}

void SimulatedStreamer::makeActive()
{
    PlayLogicInterface::setPlayerInstance(this);
}

void SimulatedStreamer::play(QList<TarnRoles> const& rows)
{
    if (m_state != TarnPlayLogicData::Stopped) {
        emit step(QStringLiteral("stop for the next track"));
        stopTrack(QString());
    }
    m_rows = rows;
    startRow(0);
}

void SimulatedStreamer::startRow(int index)
{
    ++m_generation;
    m_index = index;
    m_track = m_rows.value(index);
    m_resource = TarnResource();
    m_streamId = 0;
    m_position = 0;
    m_attempt = 0;
    emit step(QStringLiteral("track %1 of %2: %3").arg(index + 1).arg(m_rows.size()).arg(m_track.title().toString()));
    setState(TarnPlayLogicData::Preparing);
    resolve(m_track);
}

void SimulatedStreamer::resolve(TarnRoles const& roles)
{
    CMPath const prePlay = roles.mediaData().metaData().prePlayPath();
    if (prePlay.isEmpty()) {
        failed(TarnPlaylogicErrorName::TarnPlaylogicPrepareFailed(), QStringLiteral("the row has no prePlay path"));
        return;
    }
    emit step(QStringLiteral("prePlay %1").arg(prePlay.toEncoded()));
    int const generation = ++m_generation;
    CMSetDataRequest const request(prePlay, TarnRoles::Value(), roles.__variant());
    request.reply().onFinished(this, [this, generation](CMReply<QVariant> const& reply) {
        if (generation != m_generation)
            return;
        if (reply.hasError()) {
            QString const text = reply.error().messageText();
            prepareFailed(text.isEmpty() ? reply.error().name() : text);
            return;
        }
        resolved(TarnRoles(reply.value().toHash()));
    });
    CMRoot()->request(request);
}

void SimulatedStreamer::resolved(TarnRoles const& roles)
{
    TarnResource const active = roles.mediaData().activeResource();
    if (active.uri().isEmpty()) {
        prepareFailed(QStringLiteral("no URI in the answer"));
        return;
    }
    m_track = roles;
    m_resource = active;
    m_streamId = ++m_lastStreamId;
    m_position = 0;
    emit step(QStringLiteral("stream %1: %2").arg(m_streamId).arg(active.uri()));
    setState(TarnPlayLogicData::Playing);
}

void SimulatedStreamer::prepareFailed(QString const& text)
{
    emit step(QStringLiteral("prePlay failed: %1").arg(text));
    if (!retry())
        failed(TarnPlaylogicErrorName::TarnPlaylogicPrepareFailed(), text);
}

void SimulatedStreamer::failed(QString const& name, QString const& text)
{
    emit step(QStringLiteral("failed: %1 (%2)").arg(name, text));
    m_error = name;
    m_errorText = text;
    setState(TarnPlayLogicData::Stopped);
}

void SimulatedStreamer::advance(qint64 ms)
{
    if (m_state != TarnPlayLogicData::Playing)
        return;
    m_position += ms;
    if (!m_resource.hasDuration() || m_position < m_resource.duration())
        return;
    m_position = m_resource.duration();
    emit step(QStringLiteral("ended after %1 ms").arg(m_position));
    doNext();
}

void SimulatedStreamer::failStream(QString const& errorName)
{
    if (m_state != TarnPlayLogicData::Playing && m_state != TarnPlayLogicData::Paused)
        return;
    failed(errorName, QStringLiteral("stream %1 broke off").arg(m_streamId));
    retry();
}

bool SimulatedStreamer::retry()
{
    TarnMediaData mediaData = m_track.mediaData();
    QVariantList const resources = mediaData.resources();
    ++m_attempt;
    if (m_attempt >= mediaData.metaData().maximumRetryCount() || m_attempt >= resources.size())
        return false;
    TarnResource const fallback(resources.at(m_attempt).toHash());
    emit step(QStringLiteral("retry with resource %1").arg(fallback.uid()));
    TarnRoles roles = m_track;
    roles.setMediaData(mediaData.setActiveResource(fallback));
    m_resource = TarnResource();
    m_streamId = 0;
    setState(TarnPlayLogicData::Preparing);
    resolve(roles);
    return true;
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
    data.setTrackRoles(m_track).setState(m_state).setPositionMs(m_position);
    if (m_state != TarnPlayLogicData::Preparing && m_streamId > 0)
        data.setStreamId(m_streamId);
    if (m_state == TarnPlayLogicData::Stopped && !m_error.isEmpty())
        data.setError(m_error);
    {
        QMutexLocker lock(&m_dataMutex);
        m_data = data;
    }
    CMPath const path = m_track.mediaData().metaData().playbackStateChangePath();
    if (!path.isEmpty())
        CMRoot()->request(CMSetDataRequest(path, TarnRoles::Value(), data.__variant()));
    QString line = QStringLiteral("state %1").arg(stateName(m_state));
    if (!data.error().isEmpty())
        line += QStringLiteral(" (%1)").arg(data.error());
    emit step(line);
    emit stateChanged(data);
}

// Reports the track held as stopped, with errorName as the reason when
// there is one, and drops answers still on their way for it.
void SimulatedStreamer::stopTrack(QString const& errorName)
{
    ++m_generation;
    m_error = errorName;
    m_errorText.clear();
    setState(TarnPlayLogicData::Stopped);
}

TarnPlayLogicData SimulatedStreamer::data() const
{
    QMutexLocker lock(&m_dataMutex);
    return m_data;
}

CMReply<QVariant> SimulatedStreamer::onOwnThread(std::function<void()> operation)
{
    CMReply<QVariant> const reply;
    QMetaObject::invokeMethod(this, [operation, reply] {
        operation();
        reply.setValue(QVariant());
    }, Qt::AutoConnection);
    return reply;
}

CMReply<QVariant> SimulatedStreamer::pause()
{
    return onOwnThread([this] { doPause(); });
}

CMReply<QVariant> SimulatedStreamer::next()
{
    return onOwnThread([this] { doNext(); });
}

CMReply<QVariant> SimulatedStreamer::stop(int reason)
{
    return onOwnThread([this, reason] { doStop(reason); });
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
    if (m_index + 1 < m_rows.size()) {
        // The track that ends is reported before the next one prepares.
        stopTrack(QString());
        startRow(m_index + 1);
        return;
    }
    doStop(TarnPlayLogicStopReason::Service);
}

void SimulatedStreamer::doStop(int reason)
{
    ++m_generation;
    if (m_track.isEmpty())
        return;
    bool const byUser = reason == TarnPlayLogicStopReason::User;
    emit step(byUser ? QStringLiteral("stop by the user") : QStringLiteral("stop"));
    stopTrack(byUser ? TarnPlaylogicErrorName::TarnPlaylogicUserStop() : QString());
    m_track = TarnRoles();
    m_resource = TarnResource();
    m_streamId = 0;
    m_rows.clear();
    m_index = -1;
    QMutexLocker lock(&m_dataMutex);
    m_data = TarnPlayLogicData().setState(TarnPlayLogicData::Stopped);
}
