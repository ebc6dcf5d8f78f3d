#include "oauthlogin.h"
#include "returnserver.h"

#include "tarnclient.h"
#include "tarnconstants.h"
#include "tarnoauth2.h"
#include "tarnvalue.h"

#include <QUrl>
#include <QUrlQuery>
#include <memory>

OAuthLogin::OAuthLogin(Await await, ReturnPoints returnPoints)
    : mAwait(std::move(await)), mReturnPoints(std::move(returnPoints))
{
}

bool OAuthLogin::pageUrl(CMPath const& flowPath, QVariant const& value, QString* url) const
{
    auto const reply = TarnClient::setData(flowPath, TarnRoles::Activate(), value);
    if (!mAwait(reply))
        return false;
    *url = TarnOAuth2LoginData(TarnHash::toHash(reply.value())).url();
    return true;
}

OAuthLogin::Outcome OAuthLogin::appPage(CMPath const& flowPath) const
{
    Outcome outcome;
    if (!pageUrl(flowPath, TarnValue().__variant(), &outcome.url))
        outcome.status = Status::Failed;
    return outcome;
}

OAuthLogin::Outcome OAuthLogin::browser(CMPath const& flowPath, Opened const& opened) const
{
    Outcome outcome;
    // Replies may be finished from any thread: the browser's visit is handed
    // over on the server's.
    ReturnPoint point;
    std::unique_ptr<ReturnServer> ownServer;
    if (mReturnPoints) {
        point = mReturnPoints();
    } else {
        ownServer = std::make_unique<ReturnServer>(
            [cameBack = point.cameBack](QString const& url) { cameBack.setValue(url); });
        if (!ownServer->start(&outcome.why)) {
            outcome.status = Status::NoReturn;
            return outcome;
        }
        point.address = ownServer->address();
    }
    CMReply<QVariant> const cameBack = point.cameBack;
    if (!pageUrl(flowPath, TarnValue().setString_(point.address).__variant(), &outcome.url)) {
        outcome.status = Status::Failed;
        return outcome;
    }
    opened(outcome.url, point.address);
    if (!mAwait(cameBack)) {
        outcome.status = Status::Failed;
        return outcome;
    }
    outcome.returned = cameBack.value().toString();

    // The module put the node to tell into the return address; any value
    // set there means the login ended, however it went.
    QString const service =
        QUrlQuery(QUrl(outcome.returned)).queryItemValue(QStringLiteral("servicePath"), QUrl::FullyDecoded);
    CMPath const node = service.isEmpty() ? TarnAirableOAuthPath() : CMPath::fromEncoded(service);
    if (!mAwait(TarnClient::setData(node, TarnRoles::Value(), TarnValue().setString_(outcome.returned).__variant())))
        outcome.status = Status::Failed;
    return outcome;
}
