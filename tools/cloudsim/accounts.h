#pragma once

#include <QHash>
#include <QPair>
#include <QString>
#include <QStringList>

#include <mutex>

namespace cloudsim {

// The users of the services behind the cloud, and who is logged in where. A
// login belongs to a device and one service: another device, or another
// service of the same device, still has to log in. A device keeps its
// logins when it authenticates again, since they are the cloud's, not the
// token's. Safe to use from any thread.
class Accounts
{
public:
    struct User
    {
        QString email;
        QString password;
        // No limit on skips in programs.
        bool premium = false;
    };

    // "me@example.com" (a free account) and "premium@example.com", both with
    // the password "secret".
    Accounts();

    // The user of these credentials, or an empty email when they fit none.
    User verify(QString const& email, QString const& password) const;
    User user(QString const& email) const;

    void logIn(QString const& device, QString const& service, QString const& email);
    // True when the device was logged in to the service.
    bool logOut(QString const& device, QString const& service);
    // Empty when the device is not logged in to the service.
    QString userOf(QString const& device, QString const& service) const;
    // Whose ratings, favourites and playlists a device sees of a service:
    // the user logged in, or the device itself where nobody is.
    QString listener(QString const& device, QString const& service) const;

private:
    QList<User> const mUsers;
    mutable std::mutex mMutex;
    QHash<QPair<QString, QString>, QString> mSessions;
};

} // namespace cloudsim
