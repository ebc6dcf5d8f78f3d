#pragma once

#include "accounts.h"
#include "call.h"
#include "catalogue.h"

namespace cloudsim {

// The services that take a password: until a device has logged in, every
// path of such a service (its home, what lies below it, its items by id)
// answers with the service's login form. The form's submit URL,
// "/<service>/login", checks the credentials and answers the service's
// home, or a message when they are wrong; "/<service>/logout" ends the
// device's login.
class Logins
{
public:
    Logins(Catalogue const& catalogue, Accounts& accounts);

    // False when the call is none of its business: the device is logged in,
    // or the path belongs to no service that takes a password.
    bool answer(Call const& call, Answer* out);

    // The service that takes a password and owns the path, or empty.
    QString serviceOf(QString const& path) const;

private:
    Answer submit(Call const& call, QString const& service);

    Catalogue const& mCatalogue;
    Accounts& mAccounts;
};

} // namespace cloudsim
