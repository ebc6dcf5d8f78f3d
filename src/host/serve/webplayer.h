#pragma once

#include "cloudear.h"
#include "simulatedstreamer.h"

#include "cmpath.h"

#include <QJsonObject>
#include <QObject>
#include <functional>

// The browser as the device's player. The stand-in streamer resolves rows
// and a program's tracks through the module as it always does; what it
// would play, the page plays, told over the event stream ("play", "pause",
// "resume", "stop"). The page's audio element reports back (playing,
// paused, ended, failed), and those reports move the streamer as a real
// player's would, so the module hears every state and tells the cloud.
class WebPlayer : public QObject
{
    Q_OBJECT
public:
    using Answer = std::function<void(QJsonObject const&)>;
    // Sends an event of the player to the page.
    using Publish = std::function<void(QJsonObject const&)>;

    WebPlayer(CloudEar const& ear, Publish publish);
    ~WebPlayer() override;

    // Plays a row, as read with its title, path and media data; a program
    // is handed to its play logic. Answers once the streamer took it.
    void play(CMPath const& path, TarnRoles const& row, Answer const& answer);
    // next, previous, like, dislike (a program's, through its play logic),
    // pause and stop. Answers with the player form, or the refusal.
    void command(QString const& what, Answer const& answer);
    // What the page's audio element did with the stream it was given:
    // playing, paused, ended or failed.
    void report(QString const& state, int stream, Answer const& answer);
    // The player form of "status": state, track, controls, and the event
    // calls the cloud heard since the play began, when it is in-process;
    // while something plays, also the stream, whether it is live and
    // whether a program plays it.
    QJsonObject status() const;

private:
    void stateChanged(TarnPlayLogicData const& data);
    // An event call the in-process cloud heard, told to the page as it comes.
    void heardOnCloud(QString const& word);
    // All the page is to show of what the cloud heard since the play began.
    void publishHeard();
    QJsonObject trackNow() const;
    void playLogicCommand(QString const& what, QString const& role, Answer const& answer);
    // Moves the track that plays to its end, leaving the play logic its
    // turn to give what follows.
    void endTrack();
    bool isProgram() const { return !mPlayLogic.isEmpty(); }
    // What the page is told plays: a program's play logic, or the row.
    CMPath playingPath() const { return isProgram() ? mPlayLogic : mPath; }

    CloudEar mEar;
    Publish mPublish;
    SimulatedStreamer mStreamer;
    CMPath mPath;
    CMPath mPlayLogic;
    // The stream the page was told to play; 0 for none.
    int mShown = 0;
    // The words of the latest event calls heard since the play began.
    QStringList mHeard;
    bool mEnding = false;
};
