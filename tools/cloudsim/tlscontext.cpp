#include "tlscontext.h"

#include <QFile>

#include <openssl/err.h>
#include <openssl/ssl.h>

namespace cloudsim {

namespace {

// The reason of the first error in OpenSSL's queue: the later ones only say
// which of its callers gave up in turn ("PEM lib").
QString firstError()
{
    unsigned long const code = ERR_peek_error();
    char const* reason = code ? ERR_reason_error_string(code) : nullptr;
    ERR_clear_error();
    return reason ? QString::fromUtf8(reason) : QStringLiteral("unknown error");
}

bool readable(QString const& file, QString const& what, QString* error)
{
    QFile probe(file);
    if (probe.open(QIODevice::ReadOnly))
        return true;
    *error = QStringLiteral("can't read the TLS %1 %2: %3").arg(what, file, probe.errorString());
    return false;
}

} // namespace

bool setUpTls(ssl_ctx_st* context, QString const& certificateFile, QString const& keyFile, QString* error)
{
    if (!readable(certificateFile, QStringLiteral("certificate"), error) || !readable(keyFile, QStringLiteral("key"), error))
        return false;
    SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION);
    SSL_CTX_set_options(context, SSL_OP_NO_COMPRESSION | SSL_OP_NO_SESSION_RESUMPTION_ON_RENEGOTIATION);
    ERR_clear_error();
    if (SSL_CTX_use_certificate_chain_file(context, QFile::encodeName(certificateFile).constData()) != 1) {
        *error = QStringLiteral("can't use the TLS certificate %1: %2").arg(certificateFile, firstError());
        return false;
    }
    // Also refuses a key that is not the certificate's.
    if (SSL_CTX_use_PrivateKey_file(context, QFile::encodeName(keyFile).constData(), SSL_FILETYPE_PEM) != 1) {
        *error = QStringLiteral("can't use the TLS key %1: %2").arg(keyFile, firstError());
        return false;
    }
    return true;
}

} // namespace cloudsim
