#include "testplayer.h"
#include "cmconnect.h"
#include "tarnconstants.h"

#include <QTimer>

TarnRoles track(QString const& id, qint64 durationMs)
{
    TarnMediaData media;
    media.setResources({TarnResource().setUri(QStringLiteral("virtual:") + id).setDuration(durationMs).__variant()});
    return TarnRoles().setId(id).setTitle(TrString(id)).setMediaData(media);
}

CMReply<QVariant> VirtualStreamer::run(std::function<void()> const& operation)
{
    CMReply<QVariant> const reply;
    QMetaObject::invokeMethod(this, [operation, reply] {
        operation();
        reply.setValue(QVariant());
    }, Qt::AutoConnection);
    return reply;
}

void VirtualStreamer::start(TarnRoles media)
{
    m_current = media;
    m_next = TarnRoles();
    m_position = 0;
    m_paused = m_asked = false;
    events()->mediaStarted(media);
}

void VirtualStreamer::advance(qint64 ms)
{
    while (!m_current.isEmpty() && !m_paused && ms > 0) {
        qint64 const duration = TarnResource(m_current.mediaData().resources().value(0).toHash()).duration();
        qint64 const step = std::min(ms, duration - m_position);
        m_position += step;
        ms -= step;
        events()->playTimeChanged(m_position);
        if (!m_asked && duration - m_position <= kPrepareLeadMs) {
            m_asked = true;
            events()->nextMediaWanted();
        }
        if (m_position < duration)
            continue;
        if (m_next.isEmpty()) {
            m_current = TarnRoles();
            events()->mediaEnded();
        } else {
            start(m_next);
        }
    }
}

void VirtualStreamer::fail(QString const& errorName)
{
    m_current = m_next = TarnRoles();
    events()->mediaFailed(errorName);
}

ListPlayLogic::ListPlayLogic(CMNodes* nodes, CMPath const& path, QList<TarnRoles> tracks)
    : StreamerPlayLogic(nodes, path), m_tracks(std::move(tracks))
{
    CMConnect(&m_queue, SIGNAL(control(ControlQueue::ControlCommand, QVariant)), this,
              SLOT(onControl(ControlQueue::ControlCommand, QVariant)));
}

void ListPlayLogic::stopInternal(CMSetDataRequest const& request)
{
    ++m_work;
    m_queue.clear();
    StreamerPlayLogic::stopInternal(request);
}

void ListPlayLogic::playbackEnded()
{
    ++m_work;
    m_queue.clear();
    StreamerPlayLogic::playbackEnded();
}

void ListPlayLogic::likeInternal(CMSetDataRequest const& request)
{
    auto& value = m_ratings[data().trackRoles().id()];
    value = value == TarnRatingThreeStateValues::Positive ? TarnRatingThreeStateValues::Neutral
                                                           : TarnRatingThreeStateValues::Positive;
    request.reply().setValue(TarnRating().setType(TarnRatingType::ThreeState).setThreeStateValue(value).__variant());
}

TarnPlayLogicData ListPlayLogic::mediaPlaybackStarted(TarnRoles const&, TarnRoles const& started)
{
    m_index = -1;
    for (int i = 0; i < m_tracks.size(); ++i)
        if (m_tracks[i].id() == started.id())
            m_index = i;
    TarnPlayLogicData data = PlayLogicBase::data();
    TarnPlayLogicControls controls;
    controls.setPause(true).setSeekTime(true).setLike(true).setNext_(m_index + 1 < m_tracks.size());
    data.insert(TarnPlayLogicDataKey::Controls(), controls.__variant());
    return data;
}

void ListPlayLogic::onControl(ControlQueue::ControlCommand command, QVariant const&)
{
    QTimer::singleShot(0, this, [this, command, generation = m_work] {
        if (generation == m_work)
            work(command);
    });
}

void ListPlayLogic::work(ControlQueue::ControlCommand command)
{
    int const next = m_index + 1;
    if (command == ControlQueue::Play) {
        sendPlayCommand(m_tracks.value(m_index = 0), {});
    } else if (command == ControlQueue::Next && next < m_tracks.size()) {
        sendPlayCommand(m_tracks[m_index = next], {});
    } else if (command == ControlQueue::Next) {
        m_queue.finish(CMError(QStringLiteral("noMoreTracks"), TrString("No more tracks")));
        return;
    } else if (command == ControlQueue::Previous) {
        if (playTime() > TarnPreviousTrackTimeLimit() || m_index == 0)
            sendSeekTimeCommand(0);
        else
            sendPlayCommand(m_tracks[--m_index], {});
    } else if (next < m_tracks.size()) {
        sendSetNextMediaCommand(m_tracks[next], {});
    } else {
        sendNoNextMediaCommand();
    }
    m_queue.finish(QVariant());
}
