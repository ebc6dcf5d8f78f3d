#include "cloudserver.h"
#include "device.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QStringList>

#include <gtest/gtest.h>

namespace {

using cloudsim::Fault;

class CloudTraffic : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
        ASSERT_TRUE(device.authenticate());
        cloud.clearLog();
    }

    cloudsim::CloudServer cloud;
    Device device{cloud};
};

TEST_F(CloudTraffic, logsEveryRequestWithPathQueryHeadersAndTime)
{
    QDateTime const before = QDateTime::currentDateTimeUtc().addSecs(-1);
    device.get("/airable/radios/all?p=2&q=a%20b");
    device.getRaw("/reset", nullptr);

    QList<cloudsim::RequestRecord> const log = cloud.requestLog();
    ASSERT_EQ(log.size(), 2);
    EXPECT_EQ(log[0].method, "GET");
    EXPECT_EQ(log[0].path, "/airable/radios/all");
    EXPECT_EQ(log[0].query, "p=2&q=a%20b");
    EXPECT_EQ(log[0].queryValue("q"), "a b");
    EXPECT_TRUE(log[0].header("authorization").startsWith("Basic "));
    EXPECT_GE(log[0].time, before);
    EXPECT_EQ(log[1].path, "/reset");
    EXPECT_TRUE(log[1].header("Authorization").isEmpty());
    EXPECT_EQ(cloud.requestsTo("/reset").size(), 1);

    cloud.clearLog();
    EXPECT_TRUE(cloud.requestLog().isEmpty());
}

TEST(CloudRequestLog, keepsOnlyTheLatestRequests)
{
    cloudsim::CloudOptions options;
    options.requestLogLimit = 3;
    cloudsim::CloudServer cloud(options);
    ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
    Device device(cloud);
    for (char const* path : {"/a", "/b", "/c", "/d", "/e"})
        device.get(path);

    QStringList paths;
    for (auto const& r : cloud.requestLog())
        paths << r.path;
    EXPECT_EQ(paths, QStringList({"/c", "/d", "/e"}));
    EXPECT_EQ(cloud.requestsTo("/e").size(), 1);
    EXPECT_TRUE(cloud.requestsTo("/a").isEmpty());
}

// Requests and events may carry long texts: each log keeps the latest of
// them, in their order, within its bytes, however few that makes. Their
// texts alone, in UTF-16, must fit.
TEST(CloudRequestLog, keepsTheLatestWithinItsBytes)
{
    cloudsim::CloudOptions options;
    options.requestLogBytes = 64 * 1024;
    options.eventLogBytes = 32 * 1024;
    cloudsim::CloudServer cloud(options);
    ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
    Device device(cloud);
    ASSERT_TRUE(device.authenticate());
    int const sent = 20;
    for (int i = 0; i < sent; ++i)
        device.get("/airable/radios/events/start?stream=" + std::to_string(i) + std::string(4000, 'x'));

    auto const check = [sent](QStringList const& streams, qint64 bound) {
        EXPECT_GE(streams.size(), 3);
        qint64 bytes = 0;
        for (int i = 0; i < streams.size(); ++i) {
            bytes += 2 * streams[i].size();
            EXPECT_TRUE(streams[i].startsWith(QString::number(sent - streams.size() + i) + 'x'));
        }
        EXPECT_LE(bytes, bound);
    };
    QStringList requested;
    for (auto const& r : cloud.requestLog())
        requested << r.queryValue("stream");
    check(requested, options.requestLogBytes);
    QStringList heard;
    for (auto const& e : cloud.eventLog())
        heard << e.stream;
    check(heard, options.eventLogBytes);
}

TEST(CloudPort, aPortInUseIsRefusedWithItsReason)
{
    cloudsim::CloudServer first;
    ASSERT_TRUE(first.start());
    cloudsim::CloudServer second;
    EXPECT_FALSE(second.start(first.port()));
    EXPECT_EQ(second.errorString(), QString("port %1 of 127.0.0.1 is in use").arg(first.port()));
}

TEST_F(CloudTraffic, resetIsAnsweredForAnAuthenticatedDevice)
{
    EXPECT_EQ(device.get("/reset").status, 200);
    EXPECT_EQ(device.get("/reset").string("/id/2"), "true");
}

TEST_F(CloudTraffic, statusFaultHitsItsCountThenStops)
{
    cloud.setFault("/airable/radios", Fault::status(503, 2));

    EXPECT_EQ(device.get("/airable/radios").status, 503);
    EXPECT_EQ(device.get("/airable/radios").status, 503);
    EXPECT_EQ(device.get("/airable/radios").status, 200);
}

// A revoked secret refuses the device's signature while it lasts; the
// token the device holds meanwhile still opens the catalogue.
TEST_F(CloudTraffic, refusedSecretRefusesTheSignatureForItsCount)
{
    cloud.setFault("/authentication", Fault::refusedSecret(2));

    EXPECT_FALSE(device.authenticate());
    EXPECT_FALSE(device.authenticate());
    EXPECT_EQ(device.get("/airable/radios").status, 200);
    EXPECT_TRUE(device.authenticate());
}

TEST_F(CloudTraffic, faultRouteWithStarMatchesAPrefixAndClearingEndsIt)
{
    cloud.setFault("/tidal/*", Fault::status(500));

    EXPECT_EQ(device.get("/tidal/albums/td-al1").status, 500);
    EXPECT_EQ(device.get("/tidal").status, 200);
    cloud.clearFaults();
    EXPECT_EQ(device.get("/tidal/albums/td-al1").status, 200);
}

TEST_F(CloudTraffic, delayHoldsTheAnswerBack)
{
    cloud.setFault("/", Fault::delay(600, 1));
    QElapsedTimer clock;
    clock.start();

    Device::Reply const reply = device.get("/");

    EXPECT_GE(clock.elapsed(), 550);
    EXPECT_EQ(reply.string("/id/1"), "listing");
}

TEST_F(CloudTraffic, delayPastTheClientsPatienceLeavesItWithoutAnswer)
{
    cloud.setFault("/", Fault::delay(3000, 1));
    device.setReadTimeoutMs(300);
    EXPECT_EQ(device.get("/").status, 0);
}

TEST_F(CloudTraffic, bodyFaultsSpoilTheUsualAnswer)
{
    std::string const usual = device.get("/airable/radios").body;

    cloud.setFault("/airable/radios", Fault::garbage(1));
    Device::Reply const garbage = device.get("/airable/radios");
    EXPECT_EQ(garbage.status, 200);
    EXPECT_TRUE(garbage.json.IsNull());

    cloud.setFault("/airable/radios", Fault::truncated(1));
    Device::Reply const truncated = device.get("/airable/radios");
    EXPECT_EQ(truncated.body, usual.substr(0, usual.size() / 2));
    EXPECT_TRUE(truncated.json.IsNull());

    cloud.setFault("/airable/radios", Fault::oversize(100000, 1));
    Device::Reply const big = device.get("/airable/radios");
    EXPECT_GE(big.body.size(), 100000u);
    EXPECT_EQ(big.string("/title"), "Radios");
}

TEST_F(CloudTraffic, closedConnectionGivesNoAnswerAtAll)
{
    cloud.setFault("/qobuz", Fault::closeConnection(1));

    EXPECT_EQ(device.get("/qobuz").status, 0);
    EXPECT_EQ(device.get("/qobuz").status, 200);
}

struct FaultText
{
    char const* text;
    bool valid;
    char const* route;
    Fault::Kind kind;
    int value;
    int times;
};

class FaultParsing : public ::testing::TestWithParam<FaultText>
{
};

TEST_P(FaultParsing, readsTheCommandLineForm)
{
    FaultText const& row = GetParam();
    QString route;
    Fault fault;
    ASSERT_EQ(cloudsim::parseFault(row.text, &route, &fault), row.valid);
    if (!row.valid)
        return;
    EXPECT_EQ(route, row.route);
    EXPECT_EQ(fault.kind, row.kind);
    EXPECT_EQ(fault.value, row.value);
    EXPECT_EQ(fault.times, row.times);
}

INSTANTIATE_TEST_SUITE_P(
    CloudSim, FaultParsing,
    ::testing::Values(FaultText{"/a=status:500", true, "/a", Fault::Kind::Status, 500, -1},
                      FaultText{"/t/*=delay:35000@1", true, "/t/*", Fault::Kind::Delay, 35000, 1},
                      FaultText{"/=close@3", true, "/", Fault::Kind::CloseConnection, 0, 3},
                      FaultText{"/x=expired-token", true, "/x", Fault::Kind::ExpiredToken, 0, -1},
                      FaultText{"/authentication=refused-secret@3", true, "/authentication",
                                Fault::Kind::RefusedSecret, 0, 3},
                      FaultText{"/x=oversize:2097153", true, "/x", Fault::Kind::Oversize, 2097153, -1},
                      FaultText{"/x=status", false, "", Fault::Kind::Status, 0, 0},
                      FaultText{"/x=garbage:1", false, "", Fault::Kind::Status, 0, 0},
                      FaultText{"/x=melt", false, "", Fault::Kind::Status, 0, 0},
                      FaultText{"/x=status:500@0", false, "", Fault::Kind::Status, 0, 0},
                      FaultText{"status:500", false, "", Fault::Kind::Status, 0, 0}));

struct FaultRefusal
{
    char const* text;
    char const* why;
};

class FaultRefusals : public ::testing::TestWithParam<FaultRefusal>
{
};

// The reason goes to a person who typed the fault on a command line.
TEST_P(FaultRefusals, sayWhatIsWrong)
{
    QString route;
    Fault fault;
    QString why;
    EXPECT_FALSE(cloudsim::parseFault(GetParam().text, &route, &fault, &why));
    EXPECT_EQ(why, GetParam().why);
}

INSTANTIATE_TEST_SUITE_P(
    CloudSim, FaultRefusals,
    ::testing::Values(
        FaultRefusal{"/x=melt", "unknown kind 'melt' (one of status, delay, garbage, truncated, oversize, close, "
                                "expired-token, refused-secret)"},
        FaultRefusal{"/x=status:abc", "status needs a number of an HTTP status, as in status:500, not 'abc'"},
        FaultRefusal{"/x=delay", "delay needs a number of milliseconds, as in delay:1000, not ''"},
        FaultRefusal{"/x=garbage:1", "garbage takes no value, but has '1'"},
        FaultRefusal{"/x=close@0", "the count '0' after '@' is not a number above 0"},
        FaultRefusal{"x=close", "the route 'x' doesn't start with '/'"},
        FaultRefusal{"=close", "the route '' doesn't start with '/'"},
        FaultRefusal{"status:500", "'status:500' is not ROUTE=KIND[:VALUE][@TIMES]"}));

} // namespace
