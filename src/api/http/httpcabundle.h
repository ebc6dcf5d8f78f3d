#pragma once

#include <QList>
#include <QSslCertificate>
#include <QString>

// The CA certificates a device trusts for HTTPS in place of the system's
// store: one PEM file of one or more certificates, as the platform names it.
class HttpCaBundle
{
public:
    HttpCaBundle() = default;

    // Reads the file; a file that can't be read or holds no certificate
    // gives a bundle that is not valid, with the reason in errorString().
    static HttpCaBundle read(QString const& file);

    QString const& file() const { return mFile; }
    bool isValid() const { return !mCertificates.isEmpty(); }
    QString const& errorString() const { return mError; }
    QList<QSslCertificate> const& certificates() const { return mCertificates; }

private:
    QString mFile;
    QString mError;
    QList<QSslCertificate> mCertificates;
};
