#include "AirableConfigImpl.h"
#include "AirableObjectFactory.h"
#include "ContainerWithId.h"
#include "JsonParser.h"
#include "airableconnect.h"
#include "cloudserver.h"
#include "cmroot.h"
#include "logcapture.h"
#include "patience.h"
#include "tarnclient.h"
#include "tarnconstants.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QTcpServer>
#include <atomic>
#include <gtest/gtest.h>
#include <httplib.h>
#include <thread>

// Reaches the connection's signing, which no request shows directly.
class AirableConnectProbe
{
public:
    static HttpClientHeaders header(AirableConnect& c) { return c.prepareHeader(); }
    static void setToken(AirableConnect& c, airable::AccessTokenContainer::Ptr token) { c.mAccessToken = token; }
};

namespace {

using cloudsim::RequestRecord;

CMPath resetFlagPath()
{
    return CMPath::fromPrefixWithBase(TarnAirableResetRequired());
}

constexpr int kListingLimit = 2097152;

class Connect : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
        config = airable::AirableConfig::create();
        config->setBaseUrl(cloud.baseUrl());
        config->setSecret(cloud.secret());
        config->setDeviceId(QStringLiteral("AABBCCDDEEFF"));
        config->setDeviceName(QStringLiteral("Test Device"));
        config->setVersion(QStringLiteral("1.0"));
        config->setLocale(QStringLiteral("de-DE"));
        CMRootWorker::instance()->putValue(resetFlagPath(), TarnValue().setBool_(false));
    }

    std::unique_ptr<AirableConnect> connect()
    {
        return std::make_unique<AirableConnect>(config);
    }

    TarnUrl url(QString const& path) const { return TarnUrl(cloud.baseUrl() + path); }

    static void await(CMVoidReply const& reply, int ms = kPatienceMs)
    {
        ASSERT_TRUE(TarnClient::wait(reply, ms));
    }

    // Sends to every path at once, then waits for all the answers.
    QList<CMReply<AirableConnect::Reply>> sendAll(AirableConnect& c, QStringList const& paths)
    {
        QList<CMReply<AirableConnect::Reply>> replies;
        for (auto const& p : paths)
            replies << c.send(url(p), kListingLimit);
        for (auto const& r : replies)
            await(r);
        return replies;
    }

    QStringList paths() const
    {
        QStringList out;
        for (auto const& r : cloud.requestLog())
            out << r.path;
        return out;
    }

    cloudsim::CloudServer cloud;
    airable::AirableConfig::Ptr config;
};

} // namespace

TEST_F(Connect, firstSendWithoutATokenAuthenticatesAndSendsAgain)
{
    auto c = connect();
    auto reply = c->send(url(QStringLiteral("/airable/radios")), kListingLimit);
    int finished = 0;
    reply.onFinished([&](CMReply<AirableConnect::Reply> const&) { ++finished; });
    await(reply);

    QList<RequestRecord> const log = cloud.requestLog();
    ASSERT_EQ(log.size(), 3);
    EXPECT_EQ(log[0].path, QStringLiteral("/airable/radios"));
    EXPECT_TRUE(log[0].header(QStringLiteral("Authorization")).isEmpty());
    EXPECT_EQ(log[1].path, QStringLiteral("/authentication"));
    EXPECT_EQ(log[1].queryValue(QStringLiteral("device")), QStringLiteral("AABBCCDDEEFF"));
    EXPECT_EQ(log[1].queryValue(QStringLiteral("locale")), QStringLiteral("de-DE"));
    EXPECT_EQ(log[2].path, QStringLiteral("/airable/radios"));
    EXPECT_TRUE(log[2].header(QStringLiteral("Authorization")).startsWith(QStringLiteral("Basic ")));

    AirableConnect::Reply const answer = reply.value();
    EXPECT_EQ(answer.statusCode, 200);
    ASSERT_TRUE(answer.object);
    EXPECT_EQ(answer.object.dynamicCast<airable::ContainerWithId>()->name(), QStringLiteral("airable.radios"));
    EXPECT_FALSE(answer.data.isEmpty());
    QCoreApplication::processEvents();
    EXPECT_EQ(finished, 1);
}

TEST_F(Connect, concurrentRefusalsShareOneAuthenticationAndAreSentAgain)
{
    LogCapture log;
    // Refusals that come while the authentication is under way share it.
    cloud.setFault(QStringLiteral("/authentication"), cloudsim::Fault::delay(300, 1));
    auto c = connect();
    QStringList const sent{QStringLiteral("/airable/radios/popular"), QStringLiteral("/airable/feeds"),
                           QStringLiteral("/qobuz")};
    auto const replies = sendAll(*c, sent);

    QStringList const seen = paths();
    EXPECT_EQ(seen.count(QStringLiteral("/authentication")), 1);
    EXPECT_EQ(seen.size(), 7);
    for (auto const& p : sent)
        EXPECT_EQ(seen.count(p), 2) << p.toStdString();
    for (auto const& r : replies)
        EXPECT_EQ(r.value().statusCode, 200);
    // Each request went out twice: first in the order of the calls, then
    // once more each, after the one authentication.
    QStringList const urls = log.lines(log4cplus::DEBUG_LOG_LEVEL).filter(QStringLiteral("url="));
    ASSERT_EQ(urls.size(), 6);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(urls[i].endsWith(sent[i]));
    QStringList again = urls.mid(3);
    for (auto const& p : sent)
        EXPECT_EQ(again.filter(p).size(), 1);
}

TEST_F(Connect, resetGoesFirstAndClearsThePersistedFlag)
{
    CMRootWorker::instance()->putValue(resetFlagPath(), TarnValue().setBool_(true));
    LogCapture log;
    auto c = connect();
    auto const replies = sendAll(*c, {QStringLiteral("/airable/radios"), QStringLiteral("/airable/feeds")});
    QStringList const seen = paths();
    ASSERT_EQ(seen.size(), 4);
    EXPECT_EQ(seen.mid(0, 2), (QStringList{QStringLiteral("/authentication"), QStringLiteral("/reset")}));
    // Both go out after the reset, in their order; they may arrive in either.
    EXPECT_TRUE(seen.mid(2).contains(QStringLiteral("/airable/radios")));
    EXPECT_TRUE(seen.mid(2).contains(QStringLiteral("/airable/feeds")));
    QStringList const urls = log.lines(log4cplus::DEBUG_LOG_LEVEL).filter(QStringLiteral("url="));
    ASSERT_GE(urls.size(), 2);
    EXPECT_TRUE(urls[urls.size() - 2].endsWith(QStringLiteral("/airable/radios")));
    EXPECT_TRUE(urls.last().endsWith(QStringLiteral("/airable/feeds")));
    EXPECT_EQ(log.count(QStringLiteral("Need to perform factory-reset on the airable cloud...")), 1);
    EXPECT_FALSE(TarnValue::fromVariant(CMRoot()->getValue(resetFlagPath())).bool_());
}

TEST_F(Connect, failedResetFailsTheQueueAndTheNextSendStartsOver)
{
    CMRootWorker::instance()->putValue(resetFlagPath(), TarnValue().setBool_(true));
    cloud.setFault(QStringLiteral("/reset"), cloudsim::Fault::status(500, 1));
    auto c = connect();
    auto const replies = sendAll(*c, {QStringLiteral("/airable/radios"), QStringLiteral("/airable/feeds")});
    for (auto const& r : replies)
        EXPECT_EQ(r.error().messageText(), QStringLiteral("Failed reset!"));
    EXPECT_TRUE(TarnValue::fromVariant(CMRoot()->getValue(resetFlagPath())).bool_());

    cloud.clearLog();
    auto next = c->send(url(QStringLiteral("/qobuz")), kListingLimit);
    await(next);
    EXPECT_EQ(next.value().statusCode, 200);
    QStringList const seen = paths();
    ASSERT_FALSE(seen.isEmpty());
    EXPECT_EQ(seen.last(), QStringLiteral("/qobuz"));
    EXPECT_TRUE(seen.contains(QStringLiteral("/reset")));
    EXPECT_FALSE(TarnValue::fromVariant(CMRoot()->getValue(resetFlagPath())).bool_());
}

TEST_F(Connect, tokenExpiringUnderRequestsInFlightIsRenewedOnce)
{
    auto c = connect();
    await(c->send(url(QStringLiteral("/airable/radios")), kListingLimit));
    cloud.expireTokens();
    cloud.clearLog();
    // The new token takes a while, so that every refusal comes while the
    // authentication is under way; one that came after it would rightly
    // start another.
    cloud.setFault(QStringLiteral("/authentication"), cloudsim::Fault::delay(300, 1));
    QString const popular = QStringLiteral("/airable/radios/popular");
    for (auto const& r : sendAll(*c, {popular, popular, popular})) {
        EXPECT_EQ(r.value().statusCode, 200);
        EXPECT_TRUE(r.value().object);
    }
    EXPECT_EQ(paths().count(QStringLiteral("/authentication")), 1);
}

TEST_F(Connect, badSecretFailsTheQueueWithoutHanging)
{
    config->setSecret(QStringLiteral("wrong"));
    LogCapture log;
    auto c = connect();
    auto const replies = sendAll(*c, {QStringLiteral("/airable/radios"), QStringLiteral("/airable/feeds")});
    for (auto const& r : replies)
        EXPECT_EQ(r.error().messageText(), QStringLiteral("Failed to authenticate!"));
    EXPECT_EQ(replies[0].error().message().data().context, QStringLiteral("AirableConnect::handleAuthenticateResult(const HttpClientResult&)"));
    EXPECT_TRUE(log.contains(QStringLiteral("Failed to parse returned object in Authentication")));
}

TEST_F(Connect, transportFailuresFinishWithoutAnObject)
{
    auto c = connect();
    await(c->send(url(QStringLiteral("/airable/radios")), kListingLimit)); // have a token

    cloud.setFault(QStringLiteral("/airable/feeds"), cloudsim::Fault::closeConnection());
    auto closed = c->send(url(QStringLiteral("/airable/feeds")), kListingLimit);
    cloud.setFault(QStringLiteral("/qobuz"), cloudsim::Fault::oversize(200000));
    auto oversize = c->send(url(QStringLiteral("/qobuz")), 100000);
    cloud.setFault(QStringLiteral("/tidal"), cloudsim::Fault::truncated());
    auto truncated = c->send(url(QStringLiteral("/tidal")), kListingLimit);
    cloud.setFault(QStringLiteral("/amazon"), cloudsim::Fault::status(503));
    auto unavailable = c->send(url(QStringLiteral("/amazon")), kListingLimit);
    auto nothingAllowed = c->send(url(QStringLiteral("/airable/radios")), 0);
    auto noLimit = c->send(url(QStringLiteral("/airable/radios/all")), -1);

    QTcpServer closedPort;
    closedPort.listen(QHostAddress::LocalHost);
    quint16 const port = closedPort.serverPort();
    closedPort.close();
    auto refused = c->send(TarnUrl(QStringLiteral("http://127.0.0.1:%1/x").arg(port)), kListingLimit);

    for (auto const& r : {closed, oversize, unavailable, nothingAllowed, refused}) {
        await(r);
        EXPECT_NE(r.value().statusCode, 200) << r.value().url.toString().toStdString();
        EXPECT_FALSE(r.value().object);
        EXPECT_FALSE(r.hasError());
    }
    await(truncated);
    EXPECT_FALSE(truncated.value().object);
    await(noLimit);
    EXPECT_EQ(noLimit.value().statusCode, 200);
    EXPECT_EQ(unavailable.value().statusCode, 503);
}

TEST_F(Connect, headerSignsTokenSecretAndRunningTime)
{
    auto c = connect();
    config->setSecret(QStringLiteral("s"));
    portable::utils::JsonParser parser;
    ASSERT_TRUE(parser.parse(R"({"id":["airable","accesstoken","dev"],"token":"abc","time":17})"));
    auto token = airable::AirableObjectFactory::instance()
                     ->parseJson(parser.root()->firstChild())
                     .dynamicCast<airable::AccessTokenContainer>();
    ASSERT_TRUE(token);
    AirableConnectProbe::setToken(*c, token);
    QByteArray const digest = QCryptographicHash::hash("abcs17", QCryptographicHash::Md5).toHex();
    EXPECT_EQ(AirableConnectProbe::header(*c).value(QStringLiteral("Authorization")),
              QStringLiteral("Basic ") + QString::fromLatin1(("abc:" + digest).toBase64()));

    AirableConnectProbe::setToken(*c, airable::AccessTokenContainer::Ptr());
    EXPECT_TRUE(AirableConnectProbe::header(*c).isEmpty());
}

TEST_F(Connect, saltWithAZeroCharacterIsSignedAsAZeroByte)
{
    // Authentications go on until one salt holds U+0000; the cloud checks
    // each signature over the characters it received.
    int zeroSalts = 0;
    for (int i = 0; i < 300 && zeroSalts == 0; ++i) {
        auto c = connect();
        auto r = c->send(url(QStringLiteral("/airable/radios")), kListingLimit);
        await(r);
        ASSERT_EQ(r.value().statusCode, 200);
        ASSERT_TRUE(r.value().object);
        for (auto const& rec : cloud.requestsTo(QStringLiteral("/authentication")))
            zeroSalts += rec.queryValue(QStringLiteral("salt")).contains(QChar(0));
        cloud.clearLog();
    }
    EXPECT_GT(zeroSalts, 0);
}

TEST_F(Connect, secretNeverReachesTheCloud)
{
    config->setSecret(cloud.secret());
    auto c = connect();
    sendAll(*c, {QStringLiteral("/"), QStringLiteral("/airable/radios"), QStringLiteral("/airable/radios/all?p=3"),
                 QStringLiteral("/deezer"), QStringLiteral("/errors/message")});
    ASSERT_GT(cloud.requestLog().size(), 5);
    for (auto const& rec : cloud.requestLog()) {
        EXPECT_FALSE(rec.path.contains(cloud.secret()));
        EXPECT_FALSE(QUrl::fromPercentEncoding(rec.query.toUtf8()).contains(cloud.secret()));
        for (auto const& h : rec.headers) {
            EXPECT_FALSE(h.second.contains(cloud.secret()));
            EXPECT_FALSE(QString::fromUtf8(QByteArray::fromBase64(h.second.mid(6).toLatin1())).contains(cloud.secret()));
        }
    }
}

TEST_F(Connect, resetRefusedForItsTokenIsRepeatedFirstAfterTheNewOne)
{
    CMRootWorker::instance()->putValue(resetFlagPath(), TarnValue().setBool_(true));
    cloud.setFault(QStringLiteral("/reset"), cloudsim::Fault::expiredToken(1));
    auto c = connect();
    auto const replies = sendAll(*c, {QStringLiteral("/airable/radios"), QStringLiteral("/airable/feeds")});
    for (auto const& r : replies)
        EXPECT_EQ(r.value().statusCode, 200);
    QStringList const seen = paths();
    ASSERT_EQ(seen.size(), 6);
    EXPECT_EQ(seen.mid(0, 4), (QStringList{QStringLiteral("/authentication"), QStringLiteral("/reset"),
                                           QStringLiteral("/authentication"), QStringLiteral("/reset")}));
    EXPECT_FALSE(TarnValue::fromVariant(CMRoot()->getValue(resetFlagPath())).bool_());
}

TEST_F(Connect, tokenTimeBeyondSignedRangeIsSignedUnsigned)
{
    auto c = connect();
    config->setSecret(QStringLiteral("s"));
    portable::utils::JsonParser parser;
    ASSERT_TRUE(parser.parse(R"({"id":["airable","accesstoken","dev"],"token":"abc","time":3000000000})"));
    auto token = airable::AirableObjectFactory::instance()
                     ->parseJson(parser.root()->firstChild())
                     .dynamicCast<airable::AccessTokenContainer>();
    ASSERT_TRUE(token);
    AirableConnectProbe::setToken(*c, token);
    QString const header = AirableConnectProbe::header(*c).value(QStringLiteral("Authorization"));
    QByteArray const credentials = QByteArray::fromBase64(header.mid(6).toLatin1());
    // The running time may have moved on by a second since the token came.
    QStringList signedTexts;
    for (qint64 t : {3000000000LL, 3000000001LL})
        signedTexts << QString::fromLatin1("abc:" + QCryptographicHash::hash("abcs" + QByteArray::number(t),
                                                                             QCryptographicHash::Md5).toHex());
    EXPECT_TRUE(signedTexts.contains(QString::fromLatin1(credentials))) << credentials.toStdString();
}

// A cloud that refuses a request once with the other word for an expired
// token, "authorization", and then answers it.
class RefusingCloud
{
public:
    RefusingCloud()
    {
        mServer.Get("/authentication", [](httplib::Request const&, httplib::Response& res) {
            res.set_content(R"({"id":["airable","accesstoken","dev"],"token":"t","time":1})", "application/json");
        });
        mServer.Get("/guarded", [this](httplib::Request const&, httplib::Response& res) {
            bool const first = mRefusals++ == 0;
            res.set_content(first ? R"({"id":["airable","error","authorization"],"message":"expired"})"
                                  : R"({"id":["airable","listing","guarded"],"title":"In"})",
                            "application/json");
        });
        mPort = mServer.bind_to_any_port("127.0.0.1");
        mThread = std::thread([this] { mServer.listen_after_bind(); });
        while (!mServer.is_running())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ~RefusingCloud()
    {
        mServer.stop();
        mThread.join();
    }
    QString baseUrl() const { return QStringLiteral("http://127.0.0.1:%1").arg(mPort); }
    int refusals() const { return mRefusals; }

private:
    httplib::Server mServer;
    std::thread mThread;
    int mPort = 0;
    std::atomic<int> mRefusals{0};
};

TEST_F(Connect, authorizationRefusalAuthenticatesAndSendsAgain)
{
    RefusingCloud refusing;
    config->setBaseUrl(refusing.baseUrl());
    auto c = connect();
    auto reply = c->send(TarnUrl(refusing.baseUrl() + QStringLiteral("/guarded")), kListingLimit);
    await(reply);
    ASSERT_TRUE(reply.value().object);
    EXPECT_EQ(reply.value().object.dynamicCast<airable::ContainerWithId>()->combinedId(),
              QStringLiteral("airable://airable/listing/guarded"));
    EXPECT_EQ(refusing.refusals(), 2);
}
