#pragma once

#include <QHash>
#include <QPair>
#include <QString>

#include <mutex>

namespace cloudsim {

// The browser that opens a service's login page is not the device and
// carries no token of it, and the return token that the device puts into
// the page's URL is signed with a secret that all devices share. So the
// login URL that the cloud hands a device names a session of that device
// and service: an opaque code that the page turns back into the device it
// logs in. A device keeps its code, so the message it is shown stays the
// same from one request to the next. Safe to use from any thread.
class OAuthSessions
{
public:
    // The code of the device's session with the service, made at first use.
    QString sessionOf(QString const& device, QString const& service);

    struct Owner
    {
        QString device;
        QString service;
    };
    // Empty when no device was handed the code.
    Owner ownerOf(QString const& session) const;

private:
    mutable std::mutex mMutex;
    QHash<QPair<QString, QString>, QString> mCodes;
    QHash<QString, Owner> mOwners;
};

} // namespace cloudsim
