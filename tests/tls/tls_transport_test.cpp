#include "tlscloud.h"

#include "cmroot.h"
#include "httpclient.h"
#include "httpclientfailurelog.h"
#include "tarnconstants.h"
#include "tarnvalue.h"

#include <QFile>

namespace {

enum class Trusted
{
    TestCa,
    OtherCa,
    SystemStore,
};

struct Refusal
{
    char const* name;
    Served served;
    Trusted trusted;
    char const* reason;
};

std::ostream& operator<<(std::ostream& os, Refusal const& r)
{
    return os << r.name;
}

void trust(QString const& bundle)
{
    CMRootWorker::instance()->putValue(TarnSystemCaCertificatesPath(), TarnValue().setString_(bundle));
}

// One GET as the module makes them, with a header that must not travel to
// a server that could not be verified.
HttpClientResult get(QString const& url)
{
    HttpClient client(nullptr, HttpClient::Http1_1, true);
    HttpClientHeaders headers;
    headers.insert(QStringLiteral("Authorization"), QStringLiteral("Basic dG9rZW46ZGlnZXN0"));
    HttpClientOptions options;
    options.setHeaders(headers);
    HttpClientResult result;
    bool done = false;
    client.get(TarnUrl(url), options, [&](HttpClientResult const& r) {
        result = r;
        done = true;
    });
    EXPECT_TRUE(serveEventsUntil([&done] { return done; }));
    return result;
}

class TlsTransport : public TlsCloud
{
protected:
    void TearDown() override { trust(QString()); }
};

class RefusedCertificate : public TlsTransport, public ::testing::WithParamInterface<Refusal>
{
};

} // namespace

TEST_P(RefusedCertificate, endsTheTransferNamingHostAndReasonBeforeAByteOfTheRequest)
{
    Refusal const& r = GetParam();
    auto const cloud = startCloud(r.served);
    trust(r.trusted == Trusted::TestCa    ? certificates.caFile()
          : r.trusted == Trusted::OtherCa ? certificates.otherCaFile()
                                          : QString());
    quint64 const mark = HttpClientFailureLog::mark();

    HttpClientResult const result = get(cloud->baseUrl() + QStringLiteral("/airable/radios"));

    EXPECT_EQ(result.error(), HttpClientError::TlsFailure);
    EXPECT_EQ(result.statusCode(), 0);
    QString const refused = QStringLiteral("the certificate of 127.0.0.1:%1 is refused: ").arg(cloud->port());
    EXPECT_TRUE(result.errorString().startsWith(refused)) << result.errorString().toStdString();
    EXPECT_TRUE(result.errorString().contains(QLatin1String(r.reason))) << result.errorString().toStdString();
    QList<HttpClientResult> const logged = HttpClientFailureLog::since(mark);
    ASSERT_EQ(logged.size(), 1);
    EXPECT_EQ(logged.first().errorString().toStdString(), result.errorString().toStdString());
    expectNothingHeard(*cloud);
}

INSTANTIATE_TEST_SUITE_P(
    Tls, RefusedCertificate,
    ::testing::Values(
        Refusal{"selfSigned", Served::SelfSigned, Trusted::TestCa, "The certificate is self-signed, and untrusted"},
        Refusal{"expired", Served::Expired, Trusted::TestCa, "The certificate has expired"},
        Refusal{"madeOutForAnotherHost", Served::OtherHost, Trusted::TestCa,
                "The host name did not match any of the valid hosts for this certificate"},
        Refusal{"signedByACaOutsideTheBundle", Served::Good, Trusted::OtherCa, "issuer certificate"},
        Refusal{"signedByACaOutsideTheSystemStore", Served::Good, Trusted::SystemStore, "issuer certificate"}),
    [](auto const& info) { return std::string(info.param.name); });

TEST_F(TlsTransport, aCertificateOfTheBundlesCaIsAcceptedAndTheRequestArrivesWhole)
{
    auto const cloud = startCloud(Served::Good);
    trust(certificates.caFile());

    HttpClientResult const result = get(cloud->baseUrl() + QStringLiteral("/airable/radios"));

    EXPECT_EQ(result.error(), HttpClientError::None) << result.errorString().toStdString();
    EXPECT_EQ(result.statusCode(), 200);
    ASSERT_EQ(cloud->requestLog().size(), 1);
    EXPECT_EQ(cloud->requestLog().first().header(QStringLiteral("Authorization")).toStdString(),
              "Basic dG9rZW46ZGlnZXN0");
}

// The platform may name another bundle at any time; one that can't be read
// trusts nobody rather than the system's store, and plain HTTP needs none.
TEST_F(TlsTransport, theBundleIsTheOneThePlatformNamesAtEachRequest)
{
    auto const cloud = startCloud(Served::Good);
    QString const url = cloud->baseUrl() + QStringLiteral("/airable/radios");
    QString const cannotVerify = QStringLiteral("cannot verify 127.0.0.1:%1: ").arg(cloud->port());

    QString const missing = dir.filePath(QStringLiteral("missing.pem"));
    trust(missing);
    HttpClientResult const unread = get(url);
    EXPECT_EQ(unread.error(), HttpClientError::TlsFailure);
    EXPECT_TRUE(unread.errorString().startsWith(cannotVerify + QStringLiteral("cannot read the CA certificates ") + missing))
        << unread.errorString().toStdString();

    QFile empty(dir.filePath(QStringLiteral("empty.pem")));
    ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
    empty.write("no certificate here\n");
    empty.close();
    trust(empty.fileName());
    HttpClientResult const useless = get(url);
    EXPECT_EQ(useless.errorString().toStdString(),
              (cannotVerify + empty.fileName() + QStringLiteral(" holds no PEM certificate")).toStdString());
    EXPECT_TRUE(cloud->requestLog().isEmpty());

    cloudsim::CloudServer plain;
    ASSERT_TRUE(plain.start());
    EXPECT_EQ(get(plain.baseUrl() + QStringLiteral("/airable/radios")).statusCode(), 200);

    trust(certificates.otherCaFile());
    EXPECT_EQ(get(url).error(), HttpClientError::TlsFailure);
    trust(certificates.caFile());
    EXPECT_EQ(get(url).statusCode(), 200);
    EXPECT_EQ(cloud->requestLog().size(), 1);
}
