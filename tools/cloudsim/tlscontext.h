#pragma once

#include <QString>

struct ssl_ctx_st;

namespace cloudsim {

// Sets a server's TLS context up as the cloud's front end is: TLS 1.2 or
// later, with the certificate chain and the private key read from PEM
// files. False, with the reason in *error, when they can't be used.
bool setUpTls(ssl_ctx_st* context, QString const& certificateFile, QString const& keyFile, QString* error);

} // namespace cloudsim
