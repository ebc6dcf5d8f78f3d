#pragma once

#include <QString>

namespace cloudsim {

// The return token that a device puts in place of ":return:" in a login
// URL: URL-safe base64, without padding, of the compact JSON pair
// ["<encoded return URL>", "<md5hex(secret ':' encoded return URL)>"]. The
// signature shows that the address came from a device that knows the
// cloud's secret, so that no browser is sent on to an address that someone
// else chose.
struct ReturnAddress
{
    // The return URL as the device encoded it; empty when the token fails.
    QString url;
    // Why the token fails, in words for the person looking at the page.
    QString error;

    bool isValid() const { return error.isEmpty(); }
};

ReturnAddress readReturnToken(QString const& token, QString const& secret);

} // namespace cloudsim
