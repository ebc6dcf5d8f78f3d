#pragma once

#include "AccessTokenContainer.h"
#include "AirableConfig.h"
#include "AirableObject.h"
#include "cmreply.h"
#include "httpclient.h"
#include "tarnurl.h"

#include <QByteArray>
#include <QList>
#include <QObject>

// The module's one connection with the cloud. Callers send a URL and get a
// reply that finishes later; behind it the connection signs requests,
// renews a refused token and sends the request again, and after a factory
// reset of the device tells the cloud to forget it before anything else.
class AirableConnect : public QObject
{
    Q_OBJECT
public:
    // Read limits of send(): one item; listings, programs and stream URLs;
    // calls whose body nobody reads.
    static constexpr int ItemReadLimit = 100000;
    static constexpr int ListingReadLimit = 0x200000;
    static constexpr int NoReadLimit = -1;

    struct Reply
    {
        TarnUrl url;
        int statusCode = 0;
        airable::AirableObject::Ptr object; // null unless 200 and an identified object
        QByteArray data;
    };

    struct Request
    {
        TarnUrl url;
        int readSizeLimit; // negative: none
        CMReply<Reply> reply;
    };

    explicit AirableConnect(portable::SmartPointer<airable::AirableConfig> config);

    // Virtual so that a fuzzer can stand in for the cloud.
    virtual CMReply<Reply> send(TarnUrl const& url, int readSizeLimit);
    void cancelQueuedRequests(CMError const& error);
    void resetToken();
    airable::AirableObject::Ptr parseJson(QByteArray const& data);

private:
    friend class AirableConnectProbe; // tests sign with a token of their own

    void sendInternal(Request const& request);
    void handleSendResult(Request const& request, HttpClientResult const& result);
    void processQueuedRequests();
    void authenticate(Request const& request);
    void handleAuthenticateResult(HttpClientResult const& result);
    HttpClientHeaders prepareHeader();

    HttpClient mHttpClient;
    portable::SmartPointer<airable::AirableConfig> mConfig;
    QList<Request> mQueue;
    portable::SmartPointer<airable::AccessTokenContainer> mAccessToken;
    bool mAuthenticating = false;
    bool mResetRequired = false;
    bool mResetting = false;
};

Q_DECLARE_METATYPE(AirableConnect::Reply)
Q_DECLARE_METATYPE(CMReply<AirableConnect::Reply>)
