#include "childprocess.h"
#include "hostprocess.h"
#include "patience.h"
#include "testprograms.h"
#include "tlscloud.h"

#include <QFile>
#include <QRegularExpression>

namespace {

struct HostRefusal
{
    char const* name;
    Served served;
    bool withBundle;
    char const* reason;
};

std::ostream& operator<<(std::ostream& os, HostRefusal const& r)
{
    return os << r.name;
}

ProgramCommand cloudProgram(QStringList const& arguments)
{
    return programCommand(QStringLiteral(CLOUDSIM_PROGRAM), arguments);
}

class TlsHost : public TlsCloud
{
protected:
    HostRun host(cloudsim::CloudServer const& cloud, QStringList const& arguments) const
    {
        return runHost(QStringList{"--cloud", cloud.baseUrl(), "--secret", cloud.secret()} + arguments);
    }
};

class TlsHostRefusal : public TlsHost, public ::testing::WithParamInterface<HostRefusal>
{
};

} // namespace

TEST_F(TlsHost, listsAnHttpsCloudThatTheBundleVouchesFor)
{
    auto const cloud = startCloud(Served::Good);

    HostRun const run = host(*cloud, {"--ca-certificates", certificates.caFile(), "ls"});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains(QRegularExpression("^0  Radios ", QRegularExpression::MultilineOption)))
        << run.out.toStdString();

    QFile config(dir.filePath(QStringLiteral("device.ini")));
    ASSERT_TRUE(config.open(QIODevice::WriteOnly));
    config.write("ca-certificates = " + QFile::encodeName(certificates.caFile()) + "\n");
    config.close();
    EXPECT_EQ(host(*cloud, {"--config", config.fileName(), "ls"}).exitCode, 0);
}

TEST_P(TlsHostRefusal, endsWithOneLineThatNamesTheHostAndTheReason)
{
    HostRefusal const& r = GetParam();
    auto const cloud = startCloud(r.served);
    QStringList arguments{"ls"};
    if (r.withBundle)
        arguments = QStringList{"--ca-certificates", certificates.caFile()} + arguments;

    HostRun const run = host(*cloud, arguments);

    EXPECT_EQ(run.exitCode, 1);
    QStringList const lines = run.toolErrors();
    ASSERT_EQ(lines.size(), 1) << run.err.toStdString();
    EXPECT_TRUE(lines.first().startsWith(
        QStringLiteral("tarn-host: Error during communication with server: the certificate of 127.0.0.1:%1 is refused: ")
            .arg(cloud->port())))
        << lines.first().toStdString();
    EXPECT_TRUE(lines.first().contains(QLatin1String(r.reason))) << lines.first().toStdString();
    EXPECT_TRUE(cloud->requestLog().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Tls, TlsHostRefusal,
    ::testing::Values(HostRefusal{"expiredWithTheBundle", Served::Expired, true, "The certificate has expired"},
                      HostRefusal{"notInTheSystemStore", Served::Good, false, "issuer certificate"}),
    [](auto const& info) { return std::string(info.param.name); });

TEST_F(TlsHost, aBundleThatCannotServeIsBadUsage)
{
    HostRun const missing = runHost({"--ca-certificates", dir.filePath(QStringLiteral("missing.pem")), "ls"});
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_TRUE(missing.err.contains("bad value for ca-certificates: cannot read the CA certificates")) << missing.err.toStdString();

    HostRun const key = runHost({"--ca-certificates", certificates.good().key, "ls"});
    EXPECT_EQ(key.exitCode, 2);
    EXPECT_TRUE(key.err.contains("holds no PEM certificate")) << key.err.toStdString();
}

// The cloud as a person runs it, and the host pointed at it.
TEST_F(TlsHost, theCloudProgramServesHttpsThatTheHostTrustsThroughTheBundle)
{
    ChildProcess program(cloudProgram({"--port", "0", "--tls-cert", certificates.good().certificate, "--tls-key",
                                       certificates.good().key}));
    QString const banner = QString::fromUtf8(program.readLine(kPatienceMs));
    QRegularExpressionMatch const address = QRegularExpression("https://127\\.0\\.0\\.1:\\d+").match(banner);
    ASSERT_TRUE(address.hasMatch()) << banner.toStdString() << program.readAllStandardError().toStdString();

    HostRun const run = runHost({"--cloud", address.captured(), "--secret", "cloudsim-secret", "--ca-certificates",
                                 certificates.caFile(), "ls", "/airable/radios"});
    program.terminate();
    program.waitForFinished(kPatienceMs);
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
}

TEST_F(TlsHost, theCloudProgramRefusesTlsItCannotServe)
{
    auto const cloudRun = [](QStringList const& arguments) {
        ChildProcess program(cloudProgram(QStringList{"--port", "0"} + arguments));
        program.waitForFinished(kPatienceMs);
        return qMakePair(program.exitCode(), QString::fromUtf8(program.readAllStandardError()).trimmed());
    };
    auto const alone = cloudRun({"--tls-cert", certificates.good().certificate});
    EXPECT_EQ(alone.first, 2);
    EXPECT_EQ(alone.second.toStdString(), "airable-cloudsim: --tls-cert and --tls-key go together");

    QString const missing = dir.filePath(QStringLiteral("missing-key.pem"));
    auto const noKey = cloudRun({"--tls-cert", certificates.good().certificate, "--tls-key", missing});
    EXPECT_EQ(noKey.first, 1);
    EXPECT_TRUE(noKey.second.startsWith(QStringLiteral("airable-cloudsim: can't read the TLS key ") + missing))
        << noKey.second.toStdString();

    auto const swapped = cloudRun({"--tls-cert", certificates.good().key, "--tls-key", certificates.good().certificate});
    EXPECT_EQ(swapped.first, 1);
    EXPECT_TRUE(swapped.second.startsWith(QStringLiteral("airable-cloudsim: can't use the TLS certificate ")))
        << swapped.second.toStdString();
}
