#pragma once

#include "ProgramItem.h"
#include "airabletrackretriever.h"

// An Amazon Music program answers page by page, and only the first track of
// a page is played. The retriever keeps which page plays and where its
// neighbours are, so it can go back as well as on.
class AmazonMusicTrackRetriever : public AirableTrackRetriever
{
    Q_OBJECT
public:
    AmazonMusicTrackRetriever(AirableConnect* connect, TarnUrl const& programUrl);

    void playbackStarted() override;
    TarnPlayLogicControls availableControls() override;

public slots:
    void on_programFetched(CMVoidReply const& finished);

protected:
    void getFirstTrackInternal(CMReply<AirableTrackResponse> reply) override;
    void getNextTrackInternal(CMReply<AirableTrackResponse> reply) override;
    void getPreviousTrackInternal(CMReply<AirableTrackResponse> reply) override;
    void prepareNextTrackInternal(CMReply<AirableTrackResponse> reply) override;

private:
    enum ActionType { none, first, next, previous, prepareNext };

    void start(ActionType action, CMReply<AirableTrackResponse> const& reply);
    void sendProgramRequest(TarnUrl const& url);
    void setReply(airable::TrackItem::Ptr const& track, airable::ErrorItem::Ptr const& error);
    void setError(CMError const& error);
    void takeNeighbours(airable::ProgramItem const& program);

    AirableConnect* m_airableConnect;
    TarnUrl m_programUrl;
    TarnUrl m_nextUrl;
    TarnUrl m_previousUrl;
    ActionType m_actionType = none;
    CMReply<AirableTrackResponse> m_reply;
    airable::ProgramItem::Ptr m_currentProgram;
    airable::ProgramItem::Ptr m_fetchedProgram;
    airable::ProgramItem::Ptr m_preparedProgram;
    int m_invalidCount = 0;
    bool m_seekAllowed = false;
};
