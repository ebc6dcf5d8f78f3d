#pragma once

#include "playlogicinterface.h"
#include "tarnmediadata.h"

#include <QList>
#include <QMutex>
#include <QObject>
#include <atomic>
#include <functional>
#include <memory>

class StreamerControl;
class StreamerEvents;

// A player for tools and tests. It plays rows given to play(), or the media
// a play logic sends through control(). For each track it asks the owner of
// the track's prePlay path for a playable URI, setting the track's roles as
// the value, then "plays" the URI in virtual time: nothing is fetched or
// decoded, and time moves only when advance() says so. Every state goes to
// the track's playback-state-change path, as a device's player reports it.
//
// Like a gapless player it prepares what follows kFollowingLeadMs before a
// track ends (the next row, or what the play logic gives when asked) and
// moves to it the moment the track ends.
//
// While a play logic's media plays, the play logic is the player: pause(),
// next(), previous() and stop() go to it, and data() is its data. A row whose
// media data names a play logic and no prePlay path is handed to that play
// logic to play.
//
// The streamer lives on the thread that made it. The player operations and
// the play logic's commands may be given from any thread; they run on the
// streamer's thread. play(), advance() and failStream() are called there.
class SimulatedStreamer : public QObject, public PlayLogicInterface
{
    Q_OBJECT
public:
    static constexpr qint64 kFollowingLeadMs = 10000;

    explicit SimulatedStreamer(QObject* parent = nullptr);
    ~SimulatedStreamer() override;

    // Makes this the platform's active player, and the streamer that play
    // logics given none play through, until it is destroyed.
    void makeActive();
    // The streamer as a play logic commands it.
    StreamerControl* control() const;

    // Plays the rows one after the other, from the first. A row's roles hold
    // its path and media data, as a client read them. A track still held
    // is reported stopped first; a play logic whose media played hears that
    // it ended.
    void play(QList<TarnRoles> const& rows);
    void play(TarnRoles const& row) { play(QList<TarnRoles>{row}); }

    // Moves playback on; a track that reaches its duration ends, and what
    // follows plays on for the rest of the time. Live streams never end.
    void advance(qint64 ms);
    // The stream now playing breaks off with this error. The next resource
    // of the track is tried while the track's retry count allows.
    void failStream(QString const& errorName = TarnPlaylogicErrorName::TarnPlaylogicStreamFailed());

    TarnPlayLogicData data() const override;
    CMReply<QVariant> pause() override;
    CMReply<QVariant> next() override;
    // Early in a track the track before it; later, or at the first, the
    // same track from its start.
    CMReply<QVariant> previous();
    CMReply<QVariant> stop(int reason) override;

    // The streamer's own view, whoever drives it.
    int state() const { return m_state; }
    // The URI of the stream being played, with the resource it came from.
    QString uri() const { return m_current.resource.uri(); }
    TarnResource resource() const { return m_current.resource; }
    TarnRoles trackRoles() const { return m_current.roles; }
    // The last stop's error name (a failure's, or the user's stop) and what
    // the content module said about a failure; kept until the player starts
    // on something again.
    QString errorName() const { return m_error; }
    QString errorText() const { return m_errorText; }
    qint64 positionMs() const { return m_position; }
    // What follows the track that plays was given: the next row, or what
    // the play logic sent when asked.
    bool hasFollowing() const { return !m_following.isEmpty(); }

signals:
    // What the streamer did, one line per step, for people watching.
    void step(QString const& text);
    // A state after it was reported to the track's state-change path.
    void stateChanged(TarnPlayLogicData const& data);

private:
    class Control;

    // One track on its road to a stream.
    struct Track
    {
        enum Status { Resolving, Ready, Failed };

        explicit Track(TarnRoles const& given = TarnRoles()) : media(given), roles(given) {}

        // As given: a row, or what a play logic sent.
        TarnRoles media;
        // As the content module answered for it; the media until then.
        TarnRoles roles;
        TarnResource resource;
        Status status = Resolving;
        QString failure;
        int attempt = 0;
        // The prePlay answer the track waits for; 0 for none.
        int token = 0;
        // Its start was reported to the play logic.
        bool started = false;

        bool isEmpty() const { return media.isEmpty(); }
    };

    // The play logic's commands.
    void playMedia(TarnRoles const& media);
    void setFollowing(TarnRoles const& media);
    void noFollowing();
    void seek(qint64 ms);
    void pauseStream(bool paused);
    void stopForPlayLogic();

    void startRow(int index);
    void handToPlayLogic(TarnRoles const& row, CMPath const& playLogic);
    void startTrack(TarnRoles const& media);
    void prepareFollowing(TarnRoles const& media);
    void ask(Track& track, TarnRoles const& request);
    void answered(int token, CMReply<QVariant> const& reply);
    void refused(Track& track, QString const& text);
    bool retry(Track& track);
    void startStream();
    void wantFollowing();
    void trackEnded();
    void moveToFollowing();
    void failed(QString const& name, QString const& text);
    void failCurrent(QString const& name, QString const& text);
    void playLogicFailed(QString const& name);
    void leavePlayLogic();
    void setState(int state);
    void publish();
    void stopTrack(QString const& errorName);
    void doPause();
    void doNext();
    void doPrevious();
    void doStop(int reason);

    StreamerEvents* listener() const;
    // The play logic whose media plays, as a player; null while none does.
    PlayLogicInterface* drivingLogic() const;
    CMReply<QVariant> onOwnThread(std::function<CMReply<QVariant>()> operation);

    std::unique_ptr<Control> m_control;
    bool m_platform = false;
    // A play logic's media is held: its commands count, and it hears reports.
    std::atomic<bool> m_driven{false};
    QList<TarnRoles> m_rows;
    int m_index = -1;
    Track m_current;
    Track m_following;
    bool m_followingWanted = false;
    int m_state = TarnPlayLogicData::Stopped;
    QString m_error;
    QString m_errorText;
    qint64 m_position = 0;
    // The stream being played, 0 while none is; ids are never reused.
    int m_streamId = 0;
    int m_lastStreamId = 0;
    int m_lastToken = 0;

    mutable QMutex m_dataMutex;
    TarnPlayLogicData m_data;
};
