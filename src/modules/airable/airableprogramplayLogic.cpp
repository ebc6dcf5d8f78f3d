#include "airableprogramplayLogic.h"

#include "airableerrors.h"
#include "ActionItem.h"
#include "StreamItem.h"
#include "amazonmusictrackretriever.h"
#include "cb_airable.h"
#include "cmroot.h"
#include "deezertrackretriever.h"
#include "tarnactionreply.h"
#include "tarnconstants.h"
#include "tarndialogtypes.h"
#include "tarnmediadata.h"
#include "airablelog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace {

// The play logic's own id of a track, from the roles it made.
bool trackId(TarnRoles const& roles, long* id)
{
    bool ok = false;
    *id = roles.id().toLong(&ok, 10);
    return ok;
}

TarnRating ratingOf(TarnRoles const& roles)
{
    return TarnRating(roles.mediaData().metaData().rating());
}

TarnRoles withRating(TarnRoles roles, TarnRatingThreeStateValues::Enum value)
{
    TarnMediaData media = roles.mediaData();
    TarnMetaData meta = media.metaData();
    meta.setRating(TarnRating(meta.rating()).setThreeStateValue(value));
    media.setMetaData(meta);
    roles.setMediaData(media);
    return roles;
}

} // namespace

AirableProgramPlayLogic::AirableProgramPlayLogic(CMAirableWorker* worker, AirableConnect* connect, CMNodes* nodes,
                                                 CMPath const& path)
    : StreamerPlayLogic(nodes, path)
    , m_worker(worker)
    , m_connect(connect)
    , m_controlQueue(true, true)
{
    bool const connected = QObject::connect(&m_controlQueue, &ControlQueue::control, this,
                                            &AirableProgramPlayLogic::on_controlQueue_control);
    AIRABLE_ASSERT(connected, "connection");
}

void AirableProgramPlayLogic::playInternal(CMSetDataRequest const& request, TarnPlayLogicPlayArgs const& args)
{
    TarnRoles const roles = args.mediaRoles();
    TarnMetaData const metaData = roles.mediaData().metaData();
    TarnUrl const prePlay = TarnUrl::fromEncoded(metaData.prePlayPath().toEncoded().toUtf8());
    QString const serviceType = prePlay.queryItemValue(QStringLiteral("serviceType"));
    QString const dataType = prePlay.queryItemValue(QStringLiteral("dataType"));
    QString const objectId = prePlay.queryItemValue(QStringLiteral("objectId"));

    m_programPath = roles.path();
    if (!serviceType.isEmpty() && !dataType.isEmpty() && !objectId.isEmpty())
        m_programPath = m_worker->addPrefix(m_worker->config()->baseUrl()
                                            + QStringLiteral("/id/%1/%2/%3").arg(serviceType, dataType, objectId));
    if (m_programPath.isEmpty()) {
        LOG4CPLUS_ERROR(logger, "Program path is empty!");
        request.reply().setError(translatedError(Q_FUNC_INFO, QStringLiteral("Could not start audio")));
        return;
    }

    m_serviceType = getServiceType(m_programPath);
    m_trackRetriever = makeTrackRetriever(m_serviceType, m_programPath);
    if (!m_trackRetriever) {
        request.reply().setError(translatedError(Q_FUNC_INFO, QStringLiteral("Unsupported service")));
        return;
    }

    TarnPlayLogicData data = PlayLogicBase::data();
    TarnPlayLogicControls controls = m_trackRetriever->availableControls();
    controls.setPlayMode(playModesSupported());
    data.setControls(controls);
    data.setContextPath(metaData.contentPlayContextPath());
    PlayLogicBase::setData(data);
    m_controlQueue.play(args.__variant(), request.reply());
}

QString AirableProgramPlayLogic::getServiceType(CMPath const& path) const
{
    QStringList const parts = path.splitBase();
    if (parts.contains(TarnAirableDeezerServiceType()))
        return TarnAirableDeezerServiceType();
    if (parts.contains(TarnAirableAmazonMusicServiceType()))
        return TarnAirableAmazonMusicServiceType();
    LOG4CPLUS_ERROR(logger, "Invalid service program path: " << path);
    return QString();
}

QSharedPointer<AirableTrackRetriever> AirableProgramPlayLogic::makeTrackRetriever(QString const& service,
                                                                                  CMPath const& path)
{
    TarnUrl const url = TarnUrl::fromEncoded(path.base().toUtf8());
    if (service == TarnAirableDeezerServiceType())
        return QSharedPointer<AirableTrackRetriever>(new DeezerTrackRetriever(m_connect, url));
    if (service == TarnAirableAmazonMusicServiceType())
        return QSharedPointer<AirableTrackRetriever>(new AmazonMusicTrackRetriever(m_connect, url));
    LOG4CPLUS_ERROR(logger, "Unsupported service: " << path << " in ProgramPlayLogic");
    return nullptr;
}

void AirableProgramPlayLogic::nextInternal(CMSetDataRequest const& request)
{
    m_controlQueue.next(request.value(), request.reply());
}

void AirableProgramPlayLogic::previousInternal(CMSetDataRequest const& request)
{
    m_controlQueue.previous(request.value(), request.reply());
}

void AirableProgramPlayLogic::prepareNextMedia()
{
    m_controlQueue.prepareNext();
}

void AirableProgramPlayLogic::on_controlQueue_control(ControlQueue::ControlCommand command, QVariant const&)
{
    // A client may press next or previous after the program failed or was
    // stopped: with no program there is nobody to ask.
    if (!m_trackRetriever) {
        m_controlQueue.finish(translatedError(Q_FUNC_INFO, QStringLiteral("No program is playing")));
        return;
    }
    CMReply<AirableTrackResponse> reply;
    switch (command) {
    case ControlQueue::Play:
        reply = m_trackRetriever->getFirstTrack();
        break;
    case ControlQueue::Next:
        reply = m_trackRetriever->getNextTrack();
        break;
    case ControlQueue::PrepareNext:
        reply = m_trackRetriever->prepareNextTrack();
        break;
    case ControlQueue::Previous: {
        // Past the first seconds, or with nowhere to go back to, previous
        // starts the current track again.
        bool restart = false;
        if (TarnPlayLogicControls(PlayLogicBase::data().controls()).seekTime()) {
            restart = playTime() > TarnPreviousTrackTimeLimit() || !m_trackRetriever->availableControls().previous();
        }
        if (restart) {
            sendSeekTimeCommand(0);
            m_controlQueue.finish(QVariant());
            return;
        }
        reply = m_trackRetriever->getPreviousTrack();
        break;
    }
    default:
        LOG4CPLUS_ERROR(logger, "Invalid control command: " << int(command));
        m_controlQueue.finish(translatedError(Q_FUNC_INFO, QStringLiteral("Invalid command")));
        return;
    }
    reply.onFinished(this, [this, command](CMReply<AirableTrackResponse> const& done) {
        handleTrackResponse(done, command);
    });
}

void AirableProgramPlayLogic::handleTrackResponse(CMReply<AirableTrackResponse> const& reply, int command)
{
    if (reply.hasError()) {
        CMError error = reply.error();
        if (error.name() == TarnErrorSkipLimitReached() && m_serviceType == TarnAirableDeezerServiceType()) {
            // The free account's limit comes with the offer to subscribe.
            TarnRoles offer;
            offer.setId(QStringLiteral("airable://createAccountUrl"));
            offer.setTitle(TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QStringLiteral("Subscribe"))));
            offer.setDescription(TrString(TrCharData(trExtractContext(Q_FUNC_INFO),
                QStringLiteral("Subscribe to Deezer Premium to get unlimited skips"))));
            offer.setType(int(TarnDialogRowType::Link));
            QString const link = TarnValue::fromVariant(CMRoot()->getValue(TarnAirableDeezerSignUpLinkPath())).string_();
            offer.setMediaData(TarnMediaData().setResources({TarnResource().setUri(link).__variant()}));
            TarnActionReply answer;
            answer.setXclass(QStringLiteral("TarnActionReply"));
            answer.setResult(offer);
            error.insert(CMError::ActionReply(), answer.__variant());
        }
        m_controlQueue.finish(error);
        return;
    }

    AirableTrackResponse const response = reply.value();
    if (response.error) {
        QString const message = response.error->message();
        m_controlQueue.finish(CMError(CMError::DefaultName(),
            message.isEmpty() ? TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QStringLiteral("Failed to get track")))
                              : TrString(message)));
        // The cloud's orders run after the answer, as they may stop us.
        if (response.error->hasReaction()) {
            LOG4CPLUS_ERROR(logger, "Reacting to received error: " << message.toStdString());
            m_worker->performReaction(response.error->reaction());
        }
        return;
    }

    TarnRoles const roles = trackToTarnRoles(response.track, ++m_nextTrackId);
    if (roles.isEmpty()) {
        LOG4CPLUS_ERROR(logger, "Track is not playable");
        m_controlQueue.finish(translatedError(Q_FUNC_INFO, QStringLiteral("Track is not playable")));
        sendNoNextMediaCommand();
        return;
    }
    if (command == ControlQueue::Play)
        startPlayback(roles);
    else if (command == ControlQueue::PrepareNext)
        sendSetNextMediaCommand(roles, {});
    else
        sendPlayCommand(roles, {});
    m_controlQueue.finish(QVariant());
}

void AirableProgramPlayLogic::startPlayback(TarnRoles const& roles)
{
    TarnPlayLogicData data = PlayLogicBase::data();
    data.setTrackRoles(roles);
    setData(data);
    sendPlayCommand(roles, {});
}

TarnRoles AirableProgramPlayLogic::trackToTarnRoles(airable::TrackItem::Ptr const& track, long id)
{
    if (!track || track->streams().isEmpty())
        return TarnRoles();
    TarnRoles roles;
    roles.setId(QString::number(id));
    roles.setTitle(TrString(track->title()));
    roles.setType(TarnRolesType::Audio());
    roles.setAudioType(TarnRolesAudioType::AudioTrack());
    roles.setPath(m_worker->addPrefix(track->streams().first()->url()));

    TarnMediaData media(TarnHash(m_worker->handleMediaData(track, CMPath()).toHash()));
    TarnMetaData metaData = media.metaData();
    metaData.setPlayLogicPath(path());
    // Amazon Music tracks have no play context.
    if (metaData.serviceID() != TarnService_AmazonMusic_Id())
        metaData.setContentPlayContextPath(
            m_worker->addPrefix(TarnAirablePrefixPlayContext() + QLatin1Char(':') + track->url()));

    auto const positive = track->actionWithId(QStringLiteral("rate.positive"));
    auto const neutral = track->actionWithId(QStringLiteral("rate.neutral"));
    auto const negative = track->actionWithId(QStringLiteral("rate.negative"));
    if (positive && neutral && negative) {
        TarnRatingThreeStateValues::Enum const value = positive->active() ? TarnRatingThreeStateValues::Positive
            : negative->active()                                           ? TarnRatingThreeStateValues::Negative
                                                                           : TarnRatingThreeStateValues::Neutral;
        metaData.setRating(TarnRating().setType(TarnRatingType::ThreeState).setThreeStateValue(value));
        m_trackRatings[id] = TrackRating{positive->url(), neutral->url(), negative->url(), value};
    }

    media.setMetaData(metaData);
    roles.setMediaData(media);
    return roles;
}

TarnPlayLogicData AirableProgramPlayLogic::mediaPlaybackStarted(TarnRoles const&, TarnRoles const& started)
{
    long id = 0;
    if (trackId(started, &id)) {
        // The track that started and the one prepared after it keep theirs.
        for (auto it = m_trackRatings.begin(); it != m_trackRatings.end();)
            it = it.key() < id ? m_trackRatings.erase(it) : std::next(it);
    }
    m_trackRetriever->playbackStarted();
    bool const hasRating = started.mediaData().metaData().__contains(TarnMetaData::Rating());
    TarnPlayLogicControls controls = m_trackRetriever->availableControls();
    controls.setPlayMode(playModesSupported()).setLike(hasRating).setDislike(hasRating);

    TarnPlayLogicData data = PlayLogicBase::data();
    CMPath const context = started.mediaData().metaData().contentPlayContextPath();
    if (!context.isEmpty())
        data.setContextPath(context);
    data.setControls(controls);
    return data;
}

TarnRoles AirableProgramPlayLogic::translateTrackRoles(TarnRoles const& roles)
{
    long id = 0;
    if (trackId(roles, &id) && m_trackRatings.contains(id))
        return withRating(roles, m_trackRatings.value(id).value);
    return roles;
}

void AirableProgramPlayLogic::stopInternal(CMSetDataRequest const& request)
{
    m_trackRetriever.reset();
    m_controlQueue.clear();
    StreamerPlayLogic::stopInternal(request);
}

void AirableProgramPlayLogic::playbackEnded()
{
    m_trackRetriever.reset();
    m_controlQueue.clear();
    m_trackRatings.clear();
    StreamerPlayLogic::playbackEnded();
}

void AirableProgramPlayLogic::likeInternal(CMSetDataRequest const& request)
{
    rate(request, TarnRatingThreeStateValues::Positive, Q_FUNC_INFO);
}

void AirableProgramPlayLogic::dislikeInternal(CMSetDataRequest const& request)
{
    rate(request, TarnRatingThreeStateValues::Negative, Q_FUNC_INFO);
}

void AirableProgramPlayLogic::rate(CMSetDataRequest const& request, TarnRatingThreeStateValues::Enum rated,
                                   char const* signature)
{
    TarnRoles const roles = PlayLogicBase::data().trackRoles();
    long id = 0;
    if (!trackId(roles, &id) || !m_trackRatings.contains(id)) {
        LOG4CPLUS_ERROR(logger, "No rating urls for track id: " << roles.id().toStdString());
        request.reply().setError(translatedError(signature, QStringLiteral("Not supported for current playback")));
        return;
    }
    TarnRatingThreeStateValues::Enum const oldValue = ratingOf(roles).threeStateValue();
    TrackRating const& rating = m_trackRatings[id];
    bool const undo = oldValue == rated;
    TarnRatingThreeStateValues::Enum const newValue = undo ? TarnRatingThreeStateValues::Neutral : rated;
    QString const url = undo ? rating.neutralUrl
        : rated == TarnRatingThreeStateValues::Positive ? rating.positiveUrl
                                                         : rating.negativeUrl;
    updateTrackRating(newValue, id);
    CMReply<QVariant> const requestReply = request.reply();
    m_connect->send(TarnUrl::fromEncoded(url.toUtf8()), -1)
        .onFinished(this, [this, requestReply, id, oldValue](CMReply<AirableConnect::Reply> const& reply) {
            handleRatingResponse(reply, requestReply, id, oldValue);
        });
}

void AirableProgramPlayLogic::updateTrackRating(TarnRatingThreeStateValues::Enum value, long id)
{
    TarnPlayLogicData data = PlayLogicBase::data();
    TarnRoles const roles = data.trackRoles();
    // Only the track published now shows the change.
    if (roles.id() == QString::number(id)) {
        data.setTrackRoles(withRating(roles, value));
        setData(data);
    }
    if (m_trackRatings.contains(id))
        m_trackRatings[id].value = value;
}

void AirableProgramPlayLogic::handleRatingResponse(CMReply<AirableConnect::Reply> const& reply,
                                                   CMReply<QVariant> requestReply, long id,
                                                   TarnRatingThreeStateValues::Enum oldValue)
{
    if (reply.hasError()) {
        updateTrackRating(oldValue, id);
        requestReply.setError(reply.error());
        return;
    }
    airable::AirableObject::Ptr const object = reply.value().object;
    if (auto const action = object.dynamicCast<airable::ActionItem>()) {
        TarnActionReply answer;
        answer.setXclass(QStringLiteral("TarnActionReply"));
        answer.setResult(TarnRoles()
                             .setTitle(TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QStringLiteral("Rating Message"))))
                             .setDescription(TrString(action->message())));
        requestReply.setValue(answer.__variant());
        if (!action->perform().isEmpty() || !action->reaction().isEmpty())
            m_worker->performReaction(action->perform());
        return;
    }
    if (auto const error = object.dynamicCast<airable::ErrorItem>()) {
        updateTrackRating(oldValue, id);
        requestReply.setError(CMError(CMError::DefaultName(), TrString(error->message())));
        if (error->hasReaction()) {
            LOG4CPLUS_ERROR(logger, "Reacting to received error: " << error->message().toStdString());
            m_worker->performReaction(error->reaction());
        }
        return;
    }
    requestReply.setValue(QVariant());
}
