#pragma once

#include <QString>

// The platform values a content module reads, as a device maker sets them.
struct PlatformValues
{
    QString baseUrl;
    QString secret;
    int pageSize = 25;
    QString modelName = QStringLiteral("tarn-host");
    QString version = QStringLiteral("1.0");
    QString language = QStringLiteral("en_US");
    int bitrate = 10000000;
    QString mac = QStringLiteral("00:11:22:33:44:55");
    bool resetRequired = false;
    QString oauthRedirectUri;
    // The simulated cloud's sign-up page, which its login form links to too.
    QString deezerSignUpLink = QStringLiteral("https://signup.example/deezer");
    // The CA certificates the transport trusts for an HTTPS cloud, a PEM
    // file; empty for the system's store.
    QString caCertificates;
    // Bytes each of the module's threads keeps of released answers for the
    // next one; the module's own default, for a device of a few hundred MB.
    int blockCacheSize = 1 << 20;

    // Writes every value to the root's store.
    void apply() const;
};
