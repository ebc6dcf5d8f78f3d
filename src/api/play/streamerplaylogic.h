#pragma once

#include "playlogicbase.h"
#include "streamercontrol.h"

#include <atomic>
#include <functional>

// A play logic that plays through a streamer. It sends the streamer its
// commands and turns what the streamer reports into published data: the
// media that started (through mediaPlaybackStarted and translateTrackRoles),
// pauses, the end. When the streamer wants what follows, prepareNextMedia
// decides; by default nothing follows.
//
// A play logic given no streamer plays through the platform's, whichever
// that is when it sends a command: modules make play logics and never give
// them one. Each play takes the streamer's reports for the play logic that
// sent it.
//
// The streamer's reports are worked on the play logic's thread, on a later
// turn of its event loop, never inside the command that caused them.
// Reports that were under way when the play logic stopped or sent a new
// play are dropped.
class StreamerPlayLogic : public PlayLogicBase, public StreamerEvents
{
    Q_OBJECT
public:
    StreamerPlayLogic(CMNodes* nodes, CMPath const& path);
    ~StreamerPlayLogic() override;

    // The streamer the commands go to, not owned, in place of the
    // platform's; null for the platform's. It must stay until it is
    // replaced or the play logic ends.
    void setStreamer(StreamerControl* streamer);
    // Where the commands go now: the one given, else the platform's; null
    // for none.
    StreamerControl* streamer() const;

    // The platform's streamer, not owned; null for none. Commands to it are
    // given under a lock that releasePlatformStreamer takes too, so that a
    // streamer that releases itself before it goes is never used after.
    // Its commands must only hand the work to the streamer's own thread. A
    // streamer replaced as the platform's stops reporting to play logics.
    static void setPlatformStreamer(StreamerControl* streamer);
    // Ends the streamer's time as the platform's, if it is the platform's.
    static void releasePlatformStreamer(StreamerControl* streamer);

    // Publishes the roles as preparing and has the streamer play them.
    CMReply<QVariant> sendPlayCommand(TarnRoles const& roles, QHash<QString, QVariant> const& options);
    // Gives the streamer the media to follow what plays, without a gap.
    CMReply<QVariant> sendSetNextMediaCommand(TarnRoles const& roles, QHash<QString, QVariant> const& options);
    CMReply<QVariant> sendNoNextMediaCommand();
    CMReply<QVariant> sendSeekTimeCommand(long long ms);

    static CMError noStreamerError();

protected:
    void stopInternal(CMSetDataRequest const& request) override;
    void pauseInternal(CMSetDataRequest const& request) override;
    void seekTimeInternal(CMSetDataRequest const& request) override;

    // The streamer can take what follows: answer with sendSetNextMediaCommand
    // or sendNoNextMediaCommand. By default nothing follows.
    virtual void prepareNextMedia();
    // The roles to publish for media the streamer holds.
    virtual TarnRoles translateTrackRoles(TarnRoles const& roles);
    // Media started; previous is what played before it (empty at the
    // first). Returns the data to publish, which then gets the started
    // media's roles and the playing state. By default the current data with
    // the controls a streamer offers: pause and seeking.
    virtual TarnPlayLogicData mediaPlaybackStarted(TarnRoles const& previous, TarnRoles const& started);
    // The streamer ran out, or broke off; publishes the stop.
    virtual void playbackEnded();

private:
    void mediaStarted(TarnRoles const& media) override;
    void nextMediaWanted() override;
    void pausedChanged(bool paused) override;
    void playTimeChanged(qint64 ms) override;
    void mediaEnded() override;
    void mediaFailed(QString const& errorName) override;

    // Runs a streamer report on the play logic's thread unless the play
    // logic moved on to other media meanwhile.
    void report(std::function<void()> work);
    void forget();
    // Gives the command to the streamer now in charge; false when none is.
    bool withStreamer(std::function<void(StreamerControl*)> const& command) const;
    CMReply<QVariant> send(char const* what, std::function<CMReply<QVariant>(StreamerControl*)> const& command);

    StreamerControl* m_streamer = nullptr;
    TarnRoles m_playingMedia;
    int m_streamId = 0;
    QString m_failure;
    // Raised whenever what the streamer reports about becomes stale.
    std::atomic<int> m_generation{0};
};
