#pragma once

#include "cmrequest.h"

#include <QString>
#include <functional>

// A login on a service's own page, as a device's interface runs it. The
// login row's flow path is activated, for the browser with the address the
// browser is to come back to, and answers the page to open. The browser
// flow then waits for the browser to come back to this tool, and tells the
// module that the login ended; the module then closes the login dialog.
class OAuthLogin
{
public:
    // Sends nothing; waits for one reply. False when it brought no value,
    // the caller having said why.
    using Await = std::function<bool(CMVoidReply const&)>;

    enum class Status
    {
        Done,
        Failed,   // a reply brought no value: the caller knows why
        NoReturn, // no address to come back to: why says why
    };

    struct Outcome
    {
        Status status = Status::Done;
        QString url;      // the page to open
        QString returned; // the browser flow: the URL the browser came back to
        QString why;
    };

    // Where the browser comes back to: an address, and the reply that its
    // visit finishes with the URL it came back to.
    struct ReturnPoint
    {
        QString address;
        CMReply<QVariant> cameBack;
    };
    // Hands out the return point of a login about to start. Without it the
    // login starts a small server of its own; a host that serves HTTP
    // anyway is its own return address.
    using ReturnPoints = std::function<ReturnPoint()>;

    explicit OAuthLogin(Await await, ReturnPoints returnPoints = nullptr);

    // The page for the companion app, which comes back to the app itself.
    Outcome appPage(CMPath const& flowPath) const;
    // The whole browser flow; opened hears the page's URL as soon as it is
    // known, with the address the browser comes back to, so that the page
    // can be shown or opened while the flow waits.
    using Opened = std::function<void(QString const& url, QString const& back)>;
    Outcome browser(CMPath const& flowPath, Opened const& opened) const;

private:
    bool pageUrl(CMPath const& flowPath, QVariant const& value, QString* url) const;

    Await mAwait;
    ReturnPoints mReturnPoints;
};
