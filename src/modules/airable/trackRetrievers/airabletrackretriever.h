#pragma once

#include "ErrorItem.h"
#include "SkipItem.h"
#include "TrackItem.h"
#include "airableconnect.h"
#include "cmreply.h"
#include "tarnplaylogicrecords.h"

#include <QObject>

// A track, or the cloud's error object when it gave one instead.
struct AirableTrackResponse
{
    airable::TrackItem::Ptr track;
    airable::ErrorItem::Ptr error;
};
Q_DECLARE_METATYPE(AirableTrackResponse)

// The source of the tracks of one program. What both services share lives
// here: the replies, and the skip limit a free subscription puts on next.
// Every skip is reported to the cloud, whose answer alone sets the count.
class AirableTrackRetriever : public QObject
{
    Q_OBJECT
public:
    explicit AirableTrackRetriever(AirableConnect* connect);

    CMReply<AirableTrackResponse> getFirstTrack();
    CMReply<AirableTrackResponse> getNextTrack();
    CMReply<AirableTrackResponse> getPreviousTrack();
    // The track to follow the one playing; asking it is no skip.
    CMReply<AirableTrackResponse> prepareNextTrack();
    bool skipLimitReached() const;

    virtual void playbackStarted() = 0;
    virtual TarnPlayLogicControls availableControls() = 0;

public slots:
    void on_skipUrlFetched(CMReply<AirableConnect::Reply> const& reply);

protected:
    virtual void getFirstTrackInternal(CMReply<AirableTrackResponse> reply) = 0;
    virtual void getNextTrackInternal(CMReply<AirableTrackResponse> reply) = 0;
    virtual void getPreviousTrackInternal(CMReply<AirableTrackResponse> reply) = 0;
    virtual void prepareNextTrackInternal(CMReply<AirableTrackResponse> reply) = 0;

    void updateSkipLimit(airable::SkipItem::Ptr skip);

private:
    void next(CMReply<AirableTrackResponse> reply);
    void sendSkipStatusRequest(TarnUrl const& url);

    AirableConnect* m_connect;
    bool m_skipLimited = false;
    int m_availableSkips = 0;
    QString m_skipStatusUrl;
    QString m_skipUrl;
    bool m_skipFetching = false;
    bool m_nextPending = false;
    CMReply<AirableTrackResponse> m_pendingNextReply;
};
