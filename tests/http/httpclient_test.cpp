#include "httpclient.h"
#include "logcapture.h"
#include "testserver.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTcpServer>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>

namespace {

// Runs the event loop until the condition holds or the time is up.
bool spinUntil(std::function<bool()> const& condition, int ms)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition() && clock.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return condition();
}

void spinFor(int ms)
{
    spinUntil([] { return false; }, ms);
}

// A port on which nobody listens: taken from the system, then given back.
int closedPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

struct Calls
{
    int count = 0;
    HttpClientResult last;
    QThread* thread = nullptr;

    HttpClient::Callback recorder()
    {
        return [this](HttpClientResult const& r) {
            ++count;
            last = r;
            thread = QThread::currentThread();
        };
    }
};

struct Outcome
{
    char const* name;
    std::function<QString(TestServer const&)> url;
    int readSizeLimit;
    int status;
    HttpClientError error;
    int bodySize; // -1: not checked
};

std::ostream& operator<<(std::ostream& os, Outcome const& o)
{
    return os << o.name;
}

class TransferOutcome : public ::testing::TestWithParam<Outcome>
{
protected:
    TestServer server;
};

// Only the time-out case meets its timer, so only there is it short; every
// other transfer has all the time a loaded machine (or an emulator) needs.
// The wait behind each answer would show a second call.
constexpr int ProvokedTimeoutMs = 250;
constexpr int AmpleTimeoutMs = 120000;

TEST_P(TransferOutcome, callsBackExactlyOnceOnTheCallingThread)
{
    Outcome const& o = GetParam();
    LogCapture log("HttpClient");
    HttpClient client(nullptr, HttpClient::Http1_1, true);
    HttpClientOptions options;
    options.setTimeoutMs(o.error == HttpClientError::Timeout ? ProvokedTimeoutMs : AmpleTimeoutMs);
    options.setReadSizeLimit(o.readSizeLimit);
    Calls calls;

    client.get(TarnUrl(o.url(server)), options, calls.recorder());

    ASSERT_TRUE(spinUntil([&] { return calls.count > 0; }, AmpleTimeoutMs));
    spinFor(ProvokedTimeoutMs + 200);
    EXPECT_EQ(calls.count, 1);
    EXPECT_EQ(calls.thread, QThread::currentThread());
    EXPECT_EQ(calls.last.statusCode(), o.status);
    EXPECT_EQ(calls.last.error(), o.error) << calls.last.errorString().toStdString();
    if (o.bodySize >= 0) {
        EXPECT_EQ(calls.last.body().size(), o.bodySize);
    }
    int const failureLines = o.error == HttpClientError::None ? 0 : 1;
    EXPECT_EQ(log.lines(log4cplus::WARN_LOG_LEVEL).size(), failureLines) << log.lines().join("\n").toStdString();
}

QString path(TestServer const& s, char const* p)
{
    return s.url(p);
}

INSTANTIATE_TEST_SUITE_P(
    HttpClient, TransferOutcome,
    ::testing::Values(
        Outcome{"success", [](TestServer const& s) { return path(s, "/ok"); }, -1, 200, HttpClientError::None, 5},
        Outcome{"notFoundKeepsStatusAndBody", [](TestServer const& s) { return path(s, "/status/404"); }, -1, 404,
                HttpClientError::HttpStatus, 11},
        Outcome{"serverError", [](TestServer const& s) { return path(s, "/status/503"); }, -1, 503,
                HttpClientError::HttpStatus, 11},
        Outcome{"noContentIsNoFailure", [](TestServer const& s) { return path(s, "/status/204"); }, -1, 204,
                HttpClientError::None, 0},
        Outcome{"redirectIsNotFollowed", [](TestServer const& s) { return path(s, "/redirect"); }, -1, 302,
                HttpClientError::None, -1},
        Outcome{"timeout", [](TestServer const& s) { return path(s, "/slow"); }, -1, 0, HttpClientError::Timeout, 0},
        Outcome{"connectionRefused",
                [](TestServer const&) { return QString("http://127.0.0.1:%1/ok").arg(closedPort()); }, -1, 0,
                HttpClientError::ConnectionRefused, 0},
        Outcome{"failedLookup", [](TestServer const&) { return QString("http://no-such-host.invalid/ok"); }, -1, 0,
                HttpClientError::HostNotFound, 0},
        Outcome{"tlsHandshakeWithPlainServer",
                [](TestServer const& s) { return QString("https://127.0.0.1:%1/ok").arg(s.port()); }, -1, 0,
                HttpClientError::TlsFailure, 0},
        Outcome{"connectionClosedMidBody", [](TestServer const& s) { return path(s, "/cut"); }, -1, 0,
                HttpClientError::ConnectionClosed, 0},
        Outcome{"invalidUrl", [](TestServer const&) { return QString("http://[::1"); }, -1, 0,
                HttpClientError::InvalidUrl, 0},
        Outcome{"announcedBodyOverLimit", [](TestServer const& s) { return path(s, "/bytes/5000"); }, 1000, 0,
                HttpClientError::ReadLimitExceeded, 0},
        Outcome{"streamedBodyOverLimit", [](TestServer const& s) { return path(s, "/chunked/5000"); }, 1000, 0,
                HttpClientError::ReadLimitExceeded, 0},
        Outcome{"bodyOfExactlyTheLimit", [](TestServer const& s) { return path(s, "/bytes/1000"); }, 1000, 200,
                HttpClientError::None, 1000},
        Outcome{"limitZeroRefusesAnyBody", [](TestServer const& s) { return path(s, "/ok"); }, 0, 0,
                HttpClientError::ReadLimitExceeded, 0},
        Outcome{"limitZeroAcceptsEmptyBody", [](TestServer const& s) { return path(s, "/bytes/0"); }, 0, 200,
                HttpClientError::None, 0},
        Outcome{"negativeLimitMeansNone", [](TestServer const& s) { return path(s, "/chunked/3000000"); }, -1, 200,
                HttpClientError::None, 3000000}),
    [](::testing::TestParamInfo<Outcome> const& info) { return std::string(info.param.name); });

class HttpClientTest : public ::testing::Test
{
protected:
    TestServer server;
};

TEST_F(HttpClientTest, sendsTheGivenHeaders)
{
    HttpClient client(nullptr, HttpClient::Http1_1, true);
    HttpClientHeaders headers;
    headers.insert("Authorization", "Basic first");
    headers.insert("authorization", "Basic YWJjOmRlZg==");
    HttpClientOptions options;
    options.setHeaders(headers);
    Calls calls;

    client.get(TarnUrl(server.url("/echo/Authorization")), options, calls.recorder());

    ASSERT_TRUE(spinUntil([&] { return calls.count > 0; }, AmpleTimeoutMs));
    EXPECT_EQ(calls.last.body(), QByteArray("Basic YWJjOmRlZg=="));
}

TEST_F(HttpClientTest, answersOnTheCallersThreadWhenCalledFromAnotherThread)
{
    HttpClient client(nullptr, HttpClient::Http1_1, true);
    QThread caller;
    caller.start();
    QObject onCaller;
    onCaller.moveToThread(&caller);
    std::atomic<int> count{0};
    std::atomic<QThread*> answeredOn{nullptr};

    QMetaObject::invokeMethod(&onCaller, [&] {
        client.get(TarnUrl(server.url("/ok")), HttpClientOptions(), [&](HttpClientResult const&) {
            answeredOn = QThread::currentThread();
            ++count;
        });
    });

    EXPECT_TRUE(spinUntil([&] { return count > 0; }, AmpleTimeoutMs));
    caller.quit();
    caller.wait();
    EXPECT_EQ(count, 1);
    EXPECT_EQ(answeredOn.load(), &caller);
}

TEST_F(HttpClientTest, parallelTransfersEachCallBackOnce)
{
    HttpClient client(nullptr, HttpClient::Http1_1, true);
    QVector<int> counts(20, 0);
    for (int i = 0; i < counts.size(); ++i) {
        QString const p = i % 2 ? "/ok" : "/status/500";
        client.get(TarnUrl(server.url(p)), HttpClientOptions(), [&counts, i](HttpClientResult const&) { ++counts[i]; });
    }

    spinUntil([&] { return !counts.contains(0); }, AmpleTimeoutMs);
    spinFor(100);
    EXPECT_EQ(counts, QVector<int>(20, 1));
}

TEST_F(HttpClientTest, destroyedClientNeverCallsBack)
{
    auto* client = new HttpClient(nullptr, HttpClient::Http1_1, true);
    Calls calls;
    client->get(TarnUrl(server.url("/slow")), HttpClientOptions(), calls.recorder());
    client->get(TarnUrl(server.url("/ok")), HttpClientOptions(), calls.recorder());

    delete client;
    spinFor(300);

    EXPECT_EQ(calls.count, 0);
}

} // namespace
