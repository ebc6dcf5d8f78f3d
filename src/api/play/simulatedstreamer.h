#pragma once

#include "playlogicinterface.h"
#include "tarnmediadata.h"

#include <QList>
#include <QMutex>
#include <QObject>
#include <functional>

// A player for tools and tests. Given rows, it asks the owner of each row's
// prePlay path for a playable URI, setting the row's roles as the value,
// then "plays" the URI in virtual time: nothing is fetched or decoded, and
// time moves only when advance() says so. Every state goes to the item's
// playback-state-change path, as a device's player reports it.
//
// The streamer lives on the thread that made it. The player operations may
// be called from any thread; they run on the streamer's thread.
class SimulatedStreamer : public QObject, public PlayLogicInterface
{
    Q_OBJECT
public:
    explicit SimulatedStreamer(QObject* parent = nullptr);
    ~SimulatedStreamer() override;

    // Makes this the platform's active player until it is destroyed.
    void makeActive();

    // Plays the rows one after the other, from the first. A row's roles hold
    // its path and media data, as a client read them. A track still held
    // is reported stopped first.
    void play(QList<TarnRoles> const& rows);
    void play(TarnRoles const& row) { play(QList<TarnRoles>{row}); }

    // Moves playback on; a track that reaches its duration ends, and the
    // next row starts. Live streams never end.
    void advance(qint64 ms);
    // The stream now playing breaks off with this error. The next resource
    // of the item is tried while the item's retry count allows.
    void failStream(QString const& errorName = TarnPlaylogicErrorName::TarnPlaylogicStreamFailed());

    TarnPlayLogicData data() const override;
    CMReply<QVariant> pause() override;
    CMReply<QVariant> next() override;
    CMReply<QVariant> stop(int reason) override;

    int state() const { return m_state; }
    // The URI of the stream being played, with the resource it came from.
    QString uri() const { return m_resource.uri(); }
    TarnResource resource() const { return m_resource; }
    TarnRoles trackRoles() const { return m_track; }
    // The last stop's error name (a failure's, or the user's stop) and what
    // the content module said about a failure; kept until the player starts
    // on something again.
    QString errorName() const { return m_error; }
    QString errorText() const { return m_errorText; }
    qint64 positionMs() const { return m_position; }

signals:
    // What the streamer did, one line per step, for people watching.
    void step(QString const& text);
    // A state after it was reported to the item's state-change path.
    void stateChanged(TarnPlayLogicData const& data);

private:
    void startRow(int index);
    void resolve(TarnRoles const& roles);
    void resolved(TarnRoles const& roles);
    void prepareFailed(QString const& text);
    void failed(QString const& name, QString const& text);
    bool retry();
    void setState(int state);
    void publish();
    void stopTrack(QString const& errorName);
    void doPause();
    void doNext();
    void doStop(int reason);
    CMReply<QVariant> onOwnThread(std::function<void()> operation);

    QList<TarnRoles> m_rows;
    int m_index = -1;
    TarnRoles m_track;
    TarnResource m_resource;
    int m_state = TarnPlayLogicData::Stopped;
    QString m_error;
    QString m_errorText;
    qint64 m_position = 0;
    // The stream being played, 0 while none is; ids are never reused.
    int m_streamId = 0;
    int m_lastStreamId = 0;
    int m_attempt = 0;
    // Answers of superseded resolutions are dropped by this count.
    int m_generation = 0;

    mutable QMutex m_dataMutex;
    TarnPlayLogicData m_data;
};
