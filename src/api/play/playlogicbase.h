#pragma once

#include "cmnode.h"
#include "playlogicinterface.h"
#include "tarnplaylogicrecords.h"

#include <mutex>

// A play logic: a node at its path that takes the commands of clients as
// set-data requests (TarnPlayLogicRoles) and publishes what it plays as a
// TarnPlayLogicData, the Value role of its path. A client that watches the
// rows of the path hears of every change, as a reset, and reads the data
// again.
//
// Each command goes to its ...Internal operation, which a derived play
// logic overrides; the ones it leaves alone refuse with the error named
// "notSupported". Every operation answers the request's reply exactly once.
//
// The node lives on its tree's thread. data() and the player operations of
// PlayLogicInterface may be used from any thread; the player operations
// become commands on the node's path. The play logic becomes the platform's
// active player when it first publishes a state other than stopped.
class PlayLogicBase : public CMNode, public PlayLogicInterface
{
    Q_OBJECT
public:
    PlayLogicBase(CMNodes* nodes, CMPath const& path);
    ~PlayLogicBase() override;

    // The commands, as the node's set-data requests reach them.
    virtual void play(CMSetDataRequest const& request);
    virtual void stop(CMSetDataRequest const& request);
    virtual void pause(CMSetDataRequest const& request);
    virtual void previous(CMSetDataRequest const& request);
    virtual void next(CMSetDataRequest const& request);
    virtual void like(CMSetDataRequest const& request);
    virtual void dislike(CMSetDataRequest const& request);
    virtual void seekTime(CMSetDataRequest const& request);
    virtual void changePlayMode(CMSetDataRequest const& request);
    // The play modes a client may choose; TarnPlayMode words.
    virtual QStringList playModesSupported() const;

    TarnPlayLogicData data() const override;
    CMReply<QVariant> pause() override;
    CMReply<QVariant> next() override;
    CMReply<QVariant> stop(int reason) override;

    // Publishes the data; the same data again is no change.
    void setData(TarnPlayLogicData const& data);
    // Milliseconds played of the current media.
    long playTime() const { return m_playTime; }

    void getRowsRequest(CMGetRowsRequest const& request) override;
    void setDataRequest(CMSetDataRequest const& request) override;
    TarnRoles roles() const override;

    static CMError notSupportedError(QString const& command);

protected:
    virtual void playInternal(CMSetDataRequest const& request, TarnPlayLogicPlayArgs const& args);
    // Publishes a stop: nothing held, and for a stop by the user the error
    // name that says so.
    virtual void stopInternal(CMSetDataRequest const& request);
    virtual void pauseInternal(CMSetDataRequest const& request);
    virtual void previousInternal(CMSetDataRequest const& request);
    virtual void nextInternal(CMSetDataRequest const& request);
    virtual void seekTimeInternal(CMSetDataRequest const& request);
    virtual void likeInternal(CMSetDataRequest const& request);
    virtual void dislikeInternal(CMSetDataRequest const& request);
    // Takes a supported mode and publishes it; refuses any other.
    virtual void changePlayModeInternal(CMSetDataRequest const& request);

    void setPlayTime(long ms) { m_playTime = ms; }
    // The published entries that describe the play logic rather than the
    // media (TarnPlayLogicDataKey), as the start of data for new media.
    TarnPlayLogicData playLogicEntries() const;
    // The data of a play logic that holds nothing: stopped, with the error
    // name when there is one, and only the play mode kept, as controls and
    // context belong to what played.
    TarnPlayLogicData stoppedData(QString const& errorName) const;

private:
    CMReply<QVariant> command(QString const& role, QVariant const& value);

    // A standard lock, so that thread checkers see the hand-over of data().
    mutable std::mutex m_dataMutex;
    TarnPlayLogicData m_data;
    long m_playTime = 0;
};
