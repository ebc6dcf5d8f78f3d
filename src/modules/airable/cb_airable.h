#pragma once

#include "AirableConfig.h"
#include "ContentItem.h"
#include "ListingContainer.h"
#include "StreamItem.h"
#include "airableconnect.h"
#include "airablepagination.h"
#include "cmrequest.h"
#include "cmvalueitem.h"
#include "cmworker.h"
#include "tarnurl.h"

#include <QCache>
#include <QHash>
#include <QList>
#include <QSet>
#include <QSharedPointer>
#include <functional>

class AirableForm;
class AirableMessage;
class AirableOAuth;
class AirableProgramPlayLogic;
namespace airable {
class ErrorItem;
}

// The module's one worker: it takes every client request of the tree below
// its prefix and answers it from the cloud or from its own nodes. Slots run
// on the worker's thread; only the hand-over and the answers that need no
// cloud run on the caller's.
class CMAirableWorker : public CMNodesWorker
{
    Q_OBJECT
public:
    // One action of a row's context menu, as carried inside its context path.
    struct ContextAction
    {
        QString title;
        QString url;
        QString id;
        bool opensContext = false;
        bool active = false;
    };

    // One playback report waiting to go to the cloud.
    struct Event
    {
        CMPath path;
        QString event;
    };

    // The event URLs of one resolved stream, found by the item's path.
    struct EventRecord
    {
        CMPath path;
        QHash<QString, QString> urls;
    };

    explicit CMAirableWorker(QHash<QString, QVariant> const& parameters);
    ~CMAirableWorker() override;

    void getDataRequest(CMGetDataRequest const& r) override;
    void getRowsRequest(CMGetRowsRequest const& r) override;
    void setDataRequest(CMSetDataRequest const& r) override;

    airable::AirableConfig::Ptr config() const { return m_config; }

    // Service catalogue and identifiers.
    QString extractServiceId(QString const& stype, QString const& dataType);
    QString extractDataType(QString const& id, QString const& itype);
    QString extractServiceIcon(QString const& combinedId);
    void createServiceNodes();

    // From a request's path to a cloud call whose answer reaches a slot.
    void prepareAndSendRequest(CMRequest request, char const* slot, QObject* receiver);
    void sendRequest(CMRequest const& request, char const* slot, QObject* receiver, QVariant const& data);

    // From a cloud answer to rows and values.
    bool handleResponse(CMGetRowsRequest const& request, TarnUrl const& url, airable::AirableObject::Ptr object);
    bool fillPage(CMGetRowsRequest const& request);
    bool handleGetDataResponse(CMGetDataRequest const& request, TarnUrl const& url,
                               airable::AirableObject::Ptr object);
    QList<QVariant> genRow(QStringList const& roles, portable::SmartPointer<airable::ContentItem> item,
                           bool asContainer);
    void setStandardErrorMessage(CMGetRowsRequest const& request);
    void setStandardErrorMessage(CMRequest const& request);
    // Keeps the answer as the last listing, in place of the one before.
    void keepListing(airable::AirableObject::Ptr const& object, TarnUrl const& url);

    // Writes: the answer a client gets after the cloud call behind a set.
    void setDataRequestFinished(CMReply<TarnRowsRoles> const& reply, CMSetDataRequest const& request,
                                CMPath const& closePath);
    void setClosePathReply(CMSetDataRequest const& request);

    // Dialogs of the cloud: forms and messages as node subtrees, kept while
    // clients may look at them.
    bool handleForm(CMGetRowsRequest const& request, airable::AirableObject::Ptr object);
    bool handleMessage(CMGetRowsRequest const& request, airable::AirableObject::Ptr object);
    void submitMessage(CMSetDataRequest const& request);

    // Context menus: from a row's packed actions, or from the item's own
    // answer with an information block in front; the cloud's answer to an
    // action, shown in a dialog of its own.
    void handleContextMenu(CMGetRowsRequest const& request, QList<ContextAction> const& actions,
                           QList<TarnRoles> const& extraRows);
    bool handleActionDialog(CMGetRowsRequest const& request, airable::AirableObject::Ptr object);

    // Playback reports of the player, sent to the cloud one at a time.
    void handleStateChange(CMSetDataRequest const& request);
    void reportEvent(CMPath const& path, QString const& event);
    void sendQueuedEvent();
    // The event URLs of a stream just resolved, for the reports of its play.
    void keepEventUrls(CMPath const& path, QHash<QString, QString> const& urls);

    // Orders of the cloud to the player and the display.
    // Carries out the cloud's orders of an error answer; false when it has none.
    bool reactTo(airable::ErrorItem const& error);
    void performReaction(QVector<QString> reactions);
    void showNotification(CMPath const& path);
    void amazonLogout();

    // What a row offers the player.
    QVariant handleMediaData(portable::SmartPointer<airable::ContentItem> item, CMPath const& path);
    QString processDescription(QString const& description);

    // Items fetched by id for the player.
    void preparePlaylistItems(CMSetDataRequest const& request);
    void prepareItem(CMSetDataRequest const& request, CMPath const& path);
    void resumePausedPlayback(TarnUrl const& url, CMSetDataRequest const& request);

    // The context blob of a row: its actions written with QDataStream.
    static QByteArray writeContextActions(QList<ContextAction> const& actions);
    static QList<ContextAction> readContextActions(QByteArray const& blob);
    // The stream URLs a service packed into an item's metadata (base64 of a
    // QDataStream count and strings); as many as the data holds.
    static QStringList unpackPrePlayData(QString const& packed);

public slots:
    void on_getRowsRequest(CMGetRowsRequest r);
    void on_setDataRequest(CMSetDataRequest r);
    void on_getDataRequest(CMGetDataRequest r);
    // Answers of the cloud, invoked by name. The parameters are references
    // because each slot's signature text is the translation context of the
    // texts it raises.
    void on_fetchDone(AirableConnect::Reply const& reply, CMRequest const& request, QVariant const& data);
    void on_setDone(AirableConnect::Reply const& reply, CMRequest const& request, QVariant const& data);
    void on_redirectDone(AirableConnect::Reply const& reply, CMRequest const& request, QVariant const& context);
    void on_gettingTrackDone(AirableConnect::Reply const& reply, CMRequest const& request, QVariant const& context);
    void on_eventResponse(AirableConnect::Reply const& reply, CMRequest const& request, QVariant const& context);
    void on_getContentContextDone(AirableConnect::Reply const& reply, CMRequest const& request,
                                  QVariant const& context);
    void prepareItemFinished(TarnUrl const& url, airable::AirableObject::Ptr object, CMSetDataRequest const& request);
    void on_rowsPathRemoved(CMPath path);
    void on_languageChange(TarnValue newValue, TarnValue oldValue);
    void on_streamBitrateChange(TarnValue newValue, TarnValue oldValue);
    void on_primaryMacChange(TarnValue newValue);

private:
    friend class CMAirableWorkerProbe; // tests look at the caches

    void logout(CMSetDataRequest const& request);
    // A press of a form's button; its errors are raised in the context of
    // the caller's signature.
    void submitForm(CMSetDataRequest const& request, char const* signature);
    CMPath insertForm(std::function<QSharedPointer<AirableForm>(int)> const& make);
    CMPath insertMessage(std::function<QSharedPointer<AirableMessage>(int)> const& make);
    void cloudCall(CMSetDataRequest const& request, CMPath const& target, CMPath const& closePath);
    // What sendRequest asks for a prePlay path; it raises the errors itself,
    // as their texts are translated in its context.
    enum class PrePlay { Ready, Stop, MissingQuery };
    PrePlay preparePrePlay(CMRequest* request, QString* path, char const** slot, QVariant const& context);
    // True when the player holds a track of this worker from the service.
    bool playerHoldsTrackOf(QString const& serviceId) const;

    AirableConnect* m_connect = nullptr;
    airable::AirableConfig::Ptr m_config;
    airable::AirableObject::Ptr m_spareObject;
    portable::SmartPointer<airable::ListingContainer> m_lastListing;
    TarnUrl m_lastUrl;
    CMPath m_formPrefix;
    QCache<int, QSharedPointer<AirableForm>> m_forms;
    QSet<int> m_freeFormIds;
    int m_nextFormId = 1;
    CMPath m_messagePrefix;
    QCache<int, QSharedPointer<AirableMessage>> m_messages;
    QSet<int> m_freeMessageIds;
    int m_nextMessageId = 1;
    QHash<CMPath, AirablePagination> m_paginations;
    bool m_serviceNodesCreated = false;
    CMValueItem* m_languageItem = nullptr;
    AirableProgramPlayLogic* m_programPlayLogic = nullptr;
    AirableOAuth* m_oauth = nullptr;
    QList<EventRecord> m_eventRecords;
    QList<Event> m_eventQueue;
    QList<CMPath> m_playlistPathsToPrepare;
    QList<QVariant> m_preparedPlaylistItems;
    int m_lastStreamId = -1;
    int m_lastStreamState = 0;
    QSet<CMPath> m_notifiedPaths;
};

// Actions whose id opens a further context view.
extern QStringList const contextOpeningActions;
// Listings whose content changes while shown.
extern QStringList const dynamicContentListings;
