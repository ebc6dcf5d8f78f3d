#include "accounts.h"

namespace cloudsim {

Accounts::Accounts()
    : mUsers{{QStringLiteral("me@example.com"), QStringLiteral("secret"), false},
             {QStringLiteral("premium@example.com"), QStringLiteral("secret"), true}}
{
}

Accounts::User Accounts::verify(QString const& email, QString const& password) const
{
    User const known = user(email);
    return known.password == password ? known : User();
}

Accounts::User Accounts::user(QString const& email) const
{
    for (User const& u : mUsers) {
        // E-mail addresses are told apart without regard to case.
        if (u.email.compare(email, Qt::CaseInsensitive) == 0)
            return u;
    }
    return User();
}

void Accounts::logIn(QString const& device, QString const& service, QString const& email)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mSessions.insert(qMakePair(device, service), user(email).email);
}

bool Accounts::logOut(QString const& device, QString const& service)
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mSessions.remove(qMakePair(device, service)) > 0;
}

QString Accounts::userOf(QString const& device, QString const& service) const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mSessions.value(qMakePair(device, service));
}

QString Accounts::listener(QString const& device, QString const& service) const
{
    QString const user = userOf(device, service);
    return user.isEmpty() ? device : user;
}

} // namespace cloudsim
