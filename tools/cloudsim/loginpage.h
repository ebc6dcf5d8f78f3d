#pragma once

#include "accounts.h"
#include "call.h"
#include "catalogue.h"
#include "oauthsessions.h"

namespace cloudsim {

// The login pages of the services whose users log in on the service's own
// page, "/web/<service>/authorize?session=<code>&return=<token>", as a
// browser sees them. GET shows a form of e-mail ("user") and password
// ("password"), which is posted back to the same URL. A good login logs in
// the device whose session the link names and sends the browser on (302) to
// the return address in the token; wrong credentials show the form again
// with an error. A token that isn't signed with the cloud's secret, or a
// session no device was handed, answers 400 with the reason.
class LoginPage
{
public:
    LoginPage(Catalogue const& catalogue, Accounts& accounts, OAuthSessions const& sessions, QString const& secret);

    // False for paths that are no such page.
    bool answer(Call const& call, Answer* out);

    // Where the page of a service lives.
    static QString pathOf(QString const& service);

private:
    Answer form(Call const& call, QString const& service, QString const& error) const;
    Answer logIn(Call const& call, QString const& service, OAuthSessions::Owner const& owner,
                 QString const& returnUrl);

    Catalogue const& mCatalogue;
    Accounts& mAccounts;
    OAuthSessions const& mSessions;
    QString const mSecret;
};

} // namespace cloudsim
