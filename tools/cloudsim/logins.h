#pragma once

#include "accounts.h"
#include "call.h"
#include "catalogue.h"
#include "oauthsessions.h"

namespace cloudsim {

// The services that need a login: until a device has logged in, every path
// of such a service (its home, what lies below it, its items by id) answers
// with the service's login dialog. A service that takes a password answers
// its login form, whose submit URL, "/<service>/login", checks the
// credentials and answers the service's home, or a message when they are
// wrong. A service whose users log in on its own page answers a message
// whose "oauth" button leads to that page (LoginPage); "{session}" in the
// message stands for the code of the device's session, which tells the page
// whom it logs in. "/<service>/logout" ends the device's login.
class Logins
{
public:
    Logins(Catalogue const& catalogue, Accounts& accounts, OAuthSessions& sessions);

    // False when the call is none of its business: the device is logged in,
    // or the path belongs to no service that needs a login.
    bool answer(Call const& call, Answer* out);

    // The service that needs a login and owns the path, or empty.
    QString serviceOf(QString const& path) const;

private:
    Answer submit(Call const& call, QString const& service);
    Answer dialog(Call const& call, QString const& service);

    Catalogue const& mCatalogue;
    Accounts& mAccounts;
    OAuthSessions& mSessions;
};

} // namespace cloudsim
