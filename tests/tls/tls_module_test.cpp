#include "tlscloud.h"

#include "cmroot.h"
#include "platformvalues.h"
#include "tarnclient.h"
#include "tarnhost.h"
#include "testprograms.h"

namespace {

// The module loaded as the device loads it, told to trust the test's CA,
// against a cloud over HTTPS.
class TlsModule : public TlsCloud
{
protected:
    void load(cloudsim::CloudServer const& cloud)
    {
        PlatformValues values;
        values.baseUrl = cloud.baseUrl();
        values.secret = cloud.secret();
        values.caCertificates = certificates.caFile();
        values.apply();
        QString error;
        worker = qobject_cast<CMWorker*>(host.loadModule(QStringLiteral(TARN_MODULE_FILE), {}, &error));
        ASSERT_NE(worker, nullptr) << error.toStdString();
    }

    void TearDown() override
    {
        host.unloadAll();
        PlatformValues().apply();
    }

    // The listing's error; an empty one when it listed.
    CMError list(QString const& url)
    {
        auto reply = TarnClient::rows(worker->addPrefix(url), 0, 24, {TarnRoles::Title()});
        EXPECT_TRUE(TarnClient::wait(reply, 60000)) << url.toStdString();
        return reply.error();
    }

    TarnHost host;
    CMWorker* worker = nullptr;
};

} // namespace

// A device that holds a token meets another server on the cloud's address,
// as on a network that someone redirects: its next request goes nowhere,
// neither the token's header nor a signature for a new one.
TEST_F(TlsModule, anImpostorAtTheCloudsAddressGetsNeitherTokenNorSignature)
{
    auto cloud = startCloud(Served::Good);
    load(*cloud);
    ASSERT_TRUE(list(cloud->baseUrl()).isEmpty());
    ASSERT_FALSE(cloud->requestsTo(QStringLiteral("/authentication")).isEmpty());
    ASSERT_FALSE(cloud->requestLog().last().header(QStringLiteral("Authorization")).isEmpty());
    QString const base = cloud->baseUrl();
    int const port = cloud->port();
    cloud.reset();

    auto const impostor = startCloud(Served::SelfSigned, port);
    EXPECT_EQ(list(base + QStringLiteral("/airable/radios")).messageText().toStdString(),
              "Error during communication with server");

    expectNothingHeard(*impostor);
}
