#pragma once

#include "airablemessage.h"
#include "cmnode.h"

#include <QSharedPointer>

// The node a client talks to for a login on a service's own page: it hands
// out the service's login URL with a signed return address in it, and when
// the client says the login has ended it closes the login dialog and sends
// the client on to where the login was asked for.
class AirableOAuth : public CMNode
{
    Q_OBJECT
public:
    static AirableOAuth* create(CMNodes* nodes, CMPath const& path);

    void getDataRequest(CMGetDataRequest const& request) override;
    void setDataRequest(CMSetDataRequest const& request) override;

    void setLoginMsg(QSharedPointer<AirableMessage> message, CMPath const& path);
    void resetLoginMsg();

    // The text put in place of ":return:": the encoded return URL and its
    // signature with the device's secret, as a JSON pair in URL-safe base64.
    static QByteArray returnToken(QByteArray const& encodedUrl, QString const& secret);

private:
    using CMNode::CMNode;
    void handleMakeLoginData(CMSetDataRequest const& request);
    void handleApplyLoginData(CMSetDataRequest const& request);

    QSharedPointer<AirableMessage> m_loginMessage;
    CMPath m_redirectPath;
};
