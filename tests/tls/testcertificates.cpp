#include "testcertificates.h"

#include <QDir>
#include <QFile>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <memory>

namespace {

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

long const Day = 24 * 60 * 60;

// A P-256 key: quick to make, and what a server of today would show.
Key newKey()
{
    EVP_PKEY* key = nullptr;
    EVP_PKEY_CTX* context = EVP_PKEY_CTX_new_id(EVP_PKEY_EC, nullptr);
    if (context && EVP_PKEY_keygen_init(context) == 1
        && EVP_PKEY_CTX_set_ec_paramgen_curve_nid(context, NID_X9_62_prime256v1) == 1)
        EVP_PKEY_keygen(context, &key);
    EVP_PKEY_CTX_free(context);
    return Key(key, EVP_PKEY_free);
}

struct Subject
{
    char const* commonName;
    char const* altNames; // null for a CA
    long validFrom;       // seconds from now
    long validUntil;
};

bool addExtension(X509* certificate, X509V3_CTX* context, int nid, char const* value)
{
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, context, nid, value);
    bool const added = extension && X509_add_ext(certificate, extension, -1) == 1;
    X509_EXTENSION_free(extension);
    return added;
}

// Signed by the issuer, or by its own key when there is none.
Certificate makeCertificate(Subject const& subject, EVP_PKEY* key, X509* issuer, EVP_PKEY* issuerKey)
{
    static long serial = 1;
    Certificate certificate(X509_new(), X509_free);
    X509* x = certificate.get();
    bool const ca = subject.altNames == nullptr;
    X509_NAME* name = X509_get_subject_name(x);
    bool ok = X509_set_version(x, 2) == 1 && ASN1_INTEGER_set(X509_get_serialNumber(x), serial++) == 1
              && X509_gmtime_adj(X509_getm_notBefore(x), subject.validFrom)
              && X509_gmtime_adj(X509_getm_notAfter(x), subject.validUntil) && X509_set_pubkey(x, key) == 1
              && X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8,
                                            reinterpret_cast<unsigned char const*>(subject.commonName), -1, -1, 0)
                     == 1
              && X509_set_issuer_name(x, issuer ? X509_get_subject_name(issuer) : name) == 1;
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer ? issuer : x, x, nullptr, nullptr, 0);
    ok = ok && addExtension(x, &context, NID_basic_constraints, ca ? "critical,CA:TRUE" : "critical,CA:FALSE")
         && addExtension(x, &context, NID_key_usage, ca ? "critical,keyCertSign,cRLSign" : "critical,digitalSignature")
         && addExtension(x, &context, NID_subject_key_identifier, "hash")
         && (ca || addExtension(x, &context, NID_ext_key_usage, "serverAuth"))
         && (ca || addExtension(x, &context, NID_subject_alt_name, subject.altNames))
         && X509_sign(x, issuerKey ? issuerKey : key, EVP_sha256()) > 0;
    if (!ok)
        certificate.reset();
    return certificate;
}

bool writePem(QString const& file, X509* certificate, EVP_PKEY* key)
{
    BIO* out = BIO_new_file(QFile::encodeName(file).constData(), "w");
    bool const written = out
                         && (certificate ? PEM_write_bio_X509(out, certificate) == 1
                                         : PEM_write_bio_PrivateKey(out, key, nullptr, nullptr, 0, nullptr, nullptr) == 1);
    BIO_free(out);
    return written;
}

} // namespace

TestCertificates::TestCertificates(QString const& directory)
{
    QDir const dir(directory);
    Key const caKey = newKey();
    Key const otherCaKey = newKey();
    Key const serverKey = newKey();
    if (!caKey || !otherCaKey || !serverKey) {
        mError = QStringLiteral("OpenSSL made no key");
        return;
    }
    Certificate const ca = makeCertificate({"Throwaway Test CA", nullptr, -Day, 30 * Day}, caKey.get(), nullptr, nullptr);
    Certificate const otherCa =
        makeCertificate({"Another Test CA", nullptr, -Day, 30 * Day}, otherCaKey.get(), nullptr, nullptr);
    if (!ca || !otherCa) {
        mError = QStringLiteral("OpenSSL made no CA certificate");
        return;
    }
    mCa = dir.filePath(QStringLiteral("ca.pem"));
    mOtherCa = dir.filePath(QStringLiteral("other-ca.pem"));
    if (!writePem(mCa, ca.get(), nullptr) || !writePem(mOtherCa, otherCa.get(), nullptr)) {
        mError = QStringLiteral("can't write the CA certificates into %1").arg(directory);
        return;
    }

    // All share one key, as a server keeps its key when its certificate is
    // renewed; what differs is who signed what for which name and when.
    char const* const loopback = "DNS:localhost,IP:127.0.0.1";
    struct Leaf
    {
        Pair* pair;
        char const* name;
        Subject subject;
        bool selfSigned;
    };
    Leaf const leaves[] = {
        {&mGood, "good", {"127.0.0.1", loopback, -Day, 30 * Day}, false},
        {&mSelfSigned, "self-signed", {"127.0.0.1", loopback, -Day, 30 * Day}, true},
        {&mExpired, "expired", {"127.0.0.1", loopback, -30 * Day, -Day}, false},
        {&mOtherHost, "other-host", {"other.example", "DNS:other.example", -Day, 30 * Day}, false},
    };
    for (Leaf const& leaf : leaves) {
        Certificate const certificate = leaf.selfSigned
                                            ? makeCertificate(leaf.subject, serverKey.get(), nullptr, nullptr)
                                            : makeCertificate(leaf.subject, serverKey.get(), ca.get(), caKey.get());
        leaf.pair->certificate = dir.filePath(QStringLiteral("%1.pem").arg(QLatin1String(leaf.name)));
        leaf.pair->key = dir.filePath(QStringLiteral("%1-key.pem").arg(QLatin1String(leaf.name)));
        if (!certificate || !writePem(leaf.pair->certificate, certificate.get(), nullptr)
            || !writePem(leaf.pair->key, nullptr, serverKey.get())) {
            mError = QStringLiteral("can't make the %1 certificate").arg(QLatin1String(leaf.name));
            return;
        }
    }
}
