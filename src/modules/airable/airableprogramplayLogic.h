#pragma once

#include "airableconnect.h"
#include "airabletrackretriever.h"
#include "controlqueue.h"
#include "streamerplaylogic.h"

#include <QHash>
#include <QSharedPointer>

class CMAirableWorker;

// Plays the programs of the services that have them: stations whose tracks
// the service picks, one by one, with no list for a client to walk. A
// retriever per program asks the cloud; the control queue works one play,
// next, previous or prepare at a time.
class AirableProgramPlayLogic : public StreamerPlayLogic
{
    Q_OBJECT
public:
    // The URLs that rate a track, and the value last set.
    struct TrackRating
    {
        QString positiveUrl;
        QString neutralUrl;
        QString negativeUrl;
        TarnRatingThreeStateValues::Enum value = TarnRatingThreeStateValues::Neutral;
    };

    AirableProgramPlayLogic(CMAirableWorker* worker, AirableConnect* connect, CMNodes* nodes, CMPath const& path);

public slots:
    void on_controlQueue_control(ControlQueue::ControlCommand command, QVariant const& value);

protected:
    void playInternal(CMSetDataRequest const& request, TarnPlayLogicPlayArgs const& args) override;
    void stopInternal(CMSetDataRequest const& request) override;
    void previousInternal(CMSetDataRequest const& request) override;
    void nextInternal(CMSetDataRequest const& request) override;
    void likeInternal(CMSetDataRequest const& request) override;
    void dislikeInternal(CMSetDataRequest const& request) override;
    void prepareNextMedia() override;
    TarnRoles translateTrackRoles(TarnRoles const& roles) override;
    TarnPlayLogicData mediaPlaybackStarted(TarnRoles const& previous, TarnRoles const& started) override;
    void playbackEnded() override;

private:
    QString getServiceType(CMPath const& path) const;
    QSharedPointer<AirableTrackRetriever> makeTrackRetriever(QString const& service, CMPath const& path);
    void startPlayback(TarnRoles const& roles);
    TarnRoles trackToTarnRoles(airable::TrackItem::Ptr const& track, long id);
    void handleTrackResponse(CMReply<AirableTrackResponse> const& reply, int command);
    // Liking and disliking toggle between their value and neutral.
    void rate(CMSetDataRequest const& request, TarnRatingThreeStateValues::Enum rated, char const* signature);
    void updateTrackRating(TarnRatingThreeStateValues::Enum value, long id);
    void handleRatingResponse(CMReply<AirableConnect::Reply> const& reply, CMReply<QVariant> requestReply, long id,
                              TarnRatingThreeStateValues::Enum oldValue);

    CMAirableWorker* m_worker;
    AirableConnect* m_connect;
    CMPath m_programPath;
    QString m_serviceType;
    ControlQueue m_controlQueue;
    QSharedPointer<AirableTrackRetriever> m_trackRetriever;
    long m_nextTrackId = 0;
    QHash<long, TrackRating> m_trackRatings;
};
