#pragma once

#include <QString>
#include <QUrl>

// A person's web browser, as far as a service's login page needs one: it
// opens the page, types the account into the fields of its form (the
// password into the password field, the e-mail into the others, hidden
// fields left as they are), posts it, and tells where the site sent it.
// Redirects are not followed: where they lead is the answer.
class Browser
{
public:
    // caCertificates: the CAs that a page over HTTPS must be signed by; the
    // system's without a file.
    explicit Browser(QString const& caCertificates = QString()) : mCaCertificates(caCertificates) {}

    struct Result
    {
        int status = 0;
        QString location;
        // What went wrong before the form could be posted; empty otherwise.
        QString error;
    };

    Result logIn(QUrl const& page, QString const& user, QString const& password);

private:
    QString mCaCertificates;
};
