#pragma once

#include "cloudserver.h"
#include "patience.h"
#include "testcertificates.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

enum class Served
{
    Good,
    SelfSigned,
    Expired,
    OtherHost,
};

// Certificates made for the test, and the simulated cloud serving HTTPS
// with one of them.
class TlsCloud : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(certificates.isValid()) << certificates.errorString().toStdString(); }

    TestCertificates::Pair const& pair(Served served) const
    {
        switch (served) {
        case Served::SelfSigned:
            return certificates.selfSigned();
        case Served::Expired:
            return certificates.expired();
        case Served::OtherHost:
            return certificates.otherHost();
        case Served::Good:
            break;
        }
        return certificates.good();
    }

    // On a free port, or on the given one.
    std::unique_ptr<cloudsim::CloudServer> startCloud(Served served, int port = 0) const
    {
        cloudsim::CloudOptions options;
        options.tlsCertificate = pair(served).certificate;
        options.tlsKey = pair(served).key;
        auto cloud = std::make_unique<cloudsim::CloudServer>(options);
        EXPECT_TRUE(cloud->start(port)) << cloud->errorString().toStdString();
        return cloud;
    }

    QTemporaryDir dir;
    TestCertificates certificates{dir.path()};
};

// Serves the thread's events until the condition holds; false when it
// still doesn't after ms.
inline bool serveEventsUntil(std::function<bool()> const& condition, int ms = kPatienceMs)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition() && clock.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return condition();
}

// What the cloud saw of a device that refused its certificate: the device
// connected, and every connection ended before a request was read from it,
// so that nothing is in the request log, not even an authentication.
inline void expectNothingHeard(cloudsim::CloudServer const& cloud)
{
    // The cloud counts a connection when its thread lets go of it, which
    // may be a moment after the device gave up on it.
    EXPECT_TRUE(serveEventsUntil([&cloud] { return cloud.connectionCount().ended > 0; }));
    EXPECT_TRUE(cloud.requestLog().isEmpty()) << cloud.requestLog().first().path.toStdString();
    cloudsim::CloudServer::ConnectionCount const count = cloud.connectionCount();
    EXPECT_EQ(count.withoutRequest, count.ended);
}
