#pragma once

#include "controlqueue.h"
#include "streamerplaylogic.h"
#include "tarnmediadata.h"

#include <functional>

// A streamer in virtual time, as a gapless player behaves: it asks for what
// follows when the media has kPrepareLeadMs left, starts it the moment the
// media ends, and ends when nothing was given. It lives on the thread that
// made it; commands from other threads run there.
class VirtualStreamer : public QObject, public StreamerControl
{
    Q_OBJECT
public:
    static constexpr qint64 kPrepareLeadMs = 5000;
    using Options = QHash<QString, QVariant>;

    CMReply<QVariant> play(TarnRoles const& m, Options const&) override { return run([=] { start(m); }); }
    CMReply<QVariant> setNext(TarnRoles const& m, Options const&) override { return run([=] { m_next = m; }); }
    CMReply<QVariant> noNext() override { return run([=] { m_next = TarnRoles(); }); }
    CMReply<QVariant> seek(qint64 ms) override { return run([=] { m_position = ms; }); }
    CMReply<QVariant> pause() override { return run([=] { events()->pausedChanged(m_paused = true); }); }
    CMReply<QVariant> resume() override { return run([=] { events()->pausedChanged(m_paused = false); }); }
    CMReply<QVariant> stop() override { return run([=] { m_current = m_next = TarnRoles(); }); }

    void advance(qint64 ms);
    void fail(QString const& errorName);

    QString currentId() const { return m_current.id(); }
    QString nextId() const { return m_next.id(); }
    qint64 position() const { return m_position; }

private:
    CMReply<QVariant> run(std::function<void()> const& operation);
    void start(TarnRoles media);

    TarnRoles m_current;
    TarnRoles m_next;
    qint64 m_position = 0;
    bool m_paused = false;
    bool m_asked = false;
};

// A play logic over a fixed list of tracks, built as a service's program
// play logic is: every command goes through a control queue, and tracks
// come from a source that answers on a later turn of the event loop.
class ListPlayLogic : public StreamerPlayLogic
{
    Q_OBJECT
public:
    ListPlayLogic(CMNodes* nodes, CMPath const& path, QList<TarnRoles> tracks);

protected:
    void playInternal(CMSetDataRequest const& r, TarnPlayLogicPlayArgs const& a) override { m_queue.play(a.__variant(), r.reply()); }
    void nextInternal(CMSetDataRequest const& r) override { m_queue.next(r.value(), r.reply()); }
    void previousInternal(CMSetDataRequest const& r) override { m_queue.previous(r.value(), r.reply()); }
    void prepareNextMedia() override { m_queue.prepareNext(); }
    void stopInternal(CMSetDataRequest const& request) override;
    void likeInternal(CMSetDataRequest const& request) override;
    TarnPlayLogicData mediaPlaybackStarted(TarnRoles const& previous, TarnRoles const& started) override;
    void playbackEnded() override;

private slots:
    void onControl(ControlQueue::ControlCommand command, QVariant const& value);

private:
    void work(ControlQueue::ControlCommand command);

    QList<TarnRoles> m_tracks;
    ControlQueue m_queue{true, true};
    // Raised when the queue is cleared, so that work of a dropped command
    // ends without a finish that would end the next command.
    int m_work = 0;
    int m_index = -1;
    QHash<QString, TarnRatingThreeStateValues::Enum> m_ratings;
};

// A track of the given length, with an id the list play logic knows it by.
TarnRoles track(QString const& id, qint64 durationMs);
