#pragma once

#include "airabletrackretriever.h"

#include <QList>

// The tracks of a Deezer program come in batches from one URL: they are
// handed out one by one and the next batch is fetched when the list runs
// dry. A Deezer program has no way back.
class DeezerTrackRetriever : public AirableTrackRetriever
{
    Q_OBJECT
public:
    DeezerTrackRetriever(AirableConnect* connect, TarnUrl const& programUrl);

    void playbackStarted() override;
    TarnPlayLogicControls availableControls() override;

public slots:
    void on_programTracksFetched(CMVoidReply const& finished);

protected:
    void getFirstTrackInternal(CMReply<AirableTrackResponse> reply) override;
    void getNextTrackInternal(CMReply<AirableTrackResponse> reply) override;
    void getPreviousTrackInternal(CMReply<AirableTrackResponse> reply) override;
    void prepareNextTrackInternal(CMReply<AirableTrackResponse> reply) override;

private:
    enum ActionType { none, first, next, prepareNext };

    void start(ActionType action, CMReply<AirableTrackResponse> const& reply);
    void fetchNewTracksIfNecessary();
    void getTrack();
    void setReply(airable::TrackItem::Ptr const& track);
    void setError(CMError const& error);

    AirableConnect* m_airableConnect;
    TarnUrl m_programUrl;
    QList<airable::TrackItem::Ptr> m_tracks;
    bool m_fetching = false;
    bool m_trackPrepared = false;
    ActionType m_actionType = none;
    CMReply<AirableTrackResponse> m_reply;
    int m_invalidCount = 0;
    bool m_seekAllowed = false;
};
