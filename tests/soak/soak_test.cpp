#include "program.h"
#include "../crawl/crawler.h"

#include "cloudserver.h"
#include "platformvalues.h"
#include "simulatedstreamer.h"
#include "tarnclient.h"
#include "tarnconstants.h"
#include "tarnhost.h"
#include "tarnmediadata.h"
#include "tarnplaylogicrecords.h"
#include "testprograms.h"

#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <iostream>
#include <mutex>
#include <thread>

namespace {

// How long the device waits for the cloud; a delay fault must outlast it.
constexpr int kDeviceTimeoutMs = 30000;
// A reply still open this long after its request is one that never ends.
constexpr int kReplyEndMs = kDeviceTimeoutMs + 8000;
// How much the resident size may grow under faults, after the first 200
// requests.
constexpr long kSoakGrowthKiB = 2048;
// Crawling without faults before the soak for longer than a context menu
// lives unused.
constexpr int kWarmUpMs = 12000;
// Forms, and messages, that the device keeps open at most.
constexpr int kDialogsKept = 100;

long residentKiB()
{
    malloc_trim(0);
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return -1;
    return statm.readAll().split(' ').value(1).toLong() * (sysconf(_SC_PAGESIZE) / 1024);
}

// What the program holds of the heap, whatever the allocator keeps besides.
long heapKiB()
{
    struct mallinfo2 const info = mallinfo2();
    return long((info.uordblks + info.hblkhd) / 1024);
}

// The roads a device takes, told apart by what the cloud was asked.
struct Road
{
    char const* name;
    bool (*taken)(cloudsim::RequestRecord const&);
};

Road const kRoads[] = {
    {"root", [](cloudsim::RequestRecord const& r) { return r.path == QLatin1String("/"); }},
    {"listings", [](cloudsim::RequestRecord const& r) { return r.path.count(QLatin1Char('/')) == 2; }},
    {"pages", [](cloudsim::RequestRecord const& r) { return r.queryValue(QStringLiteral("p")).toInt() > 1; }},
    {"item data", [](cloudsim::RequestRecord const& r) { return r.path.startsWith(QLatin1String("/id/")); }},
    {"streams", [](cloudsim::RequestRecord const& r) { return r.path.contains(QLatin1String("/streams/")); }},
    {"logins", [](cloudsim::RequestRecord const& r) { return r.path.endsWith(QLatin1String("/login")); }},
    {"searches", [](cloudsim::RequestRecord const& r) { return r.path.endsWith(QLatin1String("/search/results")); }},
    {"events", [](cloudsim::RequestRecord const& r) { return r.path.contains(QLatin1String("/events/")); }},
    {"programs", [](cloudsim::RequestRecord const& r) {
         return r.path.contains(QLatin1String("/flow")) || r.path.contains(QLatin1String("/stations/"));
     }},
    {"actions", [](cloudsim::RequestRecord const& r) { return r.path.contains(QLatin1String("/actions/")); }},
    {"authentication", [](cloudsim::RequestRecord const& r) { return r.path == QLatin1String("/authentication"); }},
};

// Sets a fault somewhere now and then, as a bad network and a moody cloud
// do, and counts what the cloud was asked meanwhile. The log is emptied at
// each count so that it does not grow with the soak.
class FaultMaker
{
public:
    explicit FaultMaker(cloudsim::CloudServer* cloud) : m_cloud(cloud), m_thread([this] { run(); }) {}
    ~FaultMaker()
    {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_stop = true;
        }
        m_wake.notify_all();
        m_thread.join();
        m_cloud->clearFaults();
    }

    int requests() const { return m_requests; }
    // The resident size when the first 200 requests had been made.
    long baselineKiB() const { return m_baselineKiB; }
    // Faults from now on; the requests so far are counted as roads taken.
    void strike()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        count();
        m_faultsFrom = m_requests;
        m_striking = true;
    }
    int requestsUnderFaults() const { return m_requests - m_faultsFrom; }
    QMap<QString, int> roads() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_roads;
    }
    QMap<QString, int> faults() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_faults;
    }

private:
    void run()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        while (!m_wake.wait_for(lock, std::chrono::milliseconds(150), [this] { return m_stop; })) {
            count();
            if (m_striking && m_random.bounded(2) == 0)
                strikeOnce();
        }
        count();
    }

    void count()
    {
        QList<cloudsim::RequestRecord> const log = m_cloud->requestLog();
        m_cloud->clearLog();
        m_requests += log.size();
        if (m_striking && m_baselineKiB < 0 && m_requests - m_faultsFrom >= 200)
            m_baselineKiB = residentKiB();
        for (cloudsim::RequestRecord const& r : log) {
            for (Road const& road : kRoads) {
                if (road.taken(r))
                    ++m_roads[QString::fromLatin1(road.name)];
            }
        }
    }

    // One or two requests of a service hit by one kind of fault.
    void strikeOnce()
    {
        using cloudsim::Fault;
        static char const* const routes[] = {"/*", "/airable/*", "/deezer/*", "/qobuz/*", "/tidal/*", "/amazon/*",
                                             "/napster/*", "/highresaudio/*", "/id/*"};
        QString const route = QString::fromLatin1(routes[m_random.bounded(int(std::size(routes)))]);
        int const times = 1 + m_random.bounded(2);
        switch (m_random.bounded(8)) {
        case 0: m_cloud->setFault(route, Fault::status(m_random.bounded(2) ? 500 : 404, times)); note("status"); break;
        case 1: m_cloud->setFault(route, Fault::garbage(times)); note("garbage"); break;
        case 2: m_cloud->setFault(route, Fault::truncated(times)); note("truncated"); break;
        case 3: m_cloud->setFault(route, Fault::oversize(3 * 1024 * 1024, 1)); note("oversize"); break;
        case 4: m_cloud->setFault(route, Fault::closeConnection(times)); note("closed connection"); break;
        case 5: m_cloud->setFault(route, Fault::expiredToken(1)); note("expired token"); break;
        case 6:
            // The cloud forgets the token and refuses the secret for a while.
            m_cloud->setFault(route, Fault::expiredToken(1));
            m_cloud->setFault(QStringLiteral("/authentication"), Fault::refusedSecret(times));
            note("refused secret");
            break;
        default: m_cloud->setFault(route, Fault::status(503, times)); note("status"); break;
        }
    }

    void note(char const* kind) { ++m_faults[QString::fromLatin1(kind)]; }

    cloudsim::CloudServer* m_cloud;
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_stop = false;
    std::atomic<int> m_requests{0};
    std::atomic<long> m_baselineKiB{-1};
    bool m_striking = false;
    int m_faultsFrom = 0;
    QMap<QString, int> m_roads;
    QMap<QString, int> m_faults;
    QRandomGenerator m_random{20261122};
    std::thread m_thread; // last: it starts running at construction
};

// The module loaded as the device loads it, against the simulated cloud's
// catalogue, crawled again and again while the cloud misbehaves.
class Soak : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // The threads share two allocator arenas, as in tarn-host and a
        // device's platform process: an arena of its own per thread keeps
        // free memory that only that thread reuses, which the resident size
        // would count as growth on a loaded machine.
        mallopt(M_ARENA_MAX, 2);
        cloudsim::CloudOptions options;
        options.requestLogLimit = 20000;
        cloud = std::make_unique<cloudsim::CloudServer>(options);
        ASSERT_TRUE(cloud->start()) << cloud->errorString().toStdString();

        PlatformValues values;
        values.baseUrl = cloud->baseUrl();
        values.secret = cloud->secret();
        values.pageSize = 25;
        values.bitrate = TarnAirableStreamBitrate::Medium;
        values.apply();
        QString error;
        worker = qobject_cast<CMWorker*>(host.loadModule(QStringLiteral(TARN_MODULE_FILE), {}, &error));
        ASSERT_NE(worker, nullptr) << error.toStdString();
    }

    void TearDown() override { host.unloadAll(); }

    Crawler::Setup setup() const
    {
        Crawler::Setup s = Crawler::forWorker(worker, cloud->baseUrl());
        s.timeoutMs = kReplyEndMs;
        s.anyText = QStringLiteral("a");
        return s;
    }

    CMPath at(QString const& cloudPath) const { return worker->addPrefix(cloud->baseUrl() + cloudPath); }

    // A reply the soak keeps an eye on until it has ended, or until the end.
    // Ended ones are let go at once: holding every answer would be growth
    // of the soak's own.
    void watch(QString const& what, CMVoidReply const& reply)
    {
        QElapsedTimer sent;
        sent.start();
        ++watchedCount;
        watched.erase(std::remove_if(watched.begin(), watched.end(), [](Watched const& w) { return w.reply.isFinished(); }),
                      watched.end());
        watched << Watched{what, reply, sent};
    }

    // A program's row as the player hands it to the module's play logic,
    // then skipped forward and back while it plays.
    void steerProgram(SimulatedStreamer* streamer, QString const& path)
    {
        TarnRoles row;
        row.setPath(CMPath::fromEncoded(path));
        row.setMediaData(TarnMediaData().setMetaData(TarnMetaData().setPlayLogicPath(TarnAirableProgramPlayLogicPath())));
        streamer->play(row);
        for (QString const& role : {TarnPlayLogicRoles::Next(), TarnPlayLogicRoles::Previous(), TarnPlayLogicRoles::Like()}) {
            auto reply = TarnClient::setData(TarnAirableProgramPlayLogicPath(), role, QVariant());
            watch(QStringLiteral("%1 of %2").arg(role, path), reply);
            TarnClient::wait(reply, kReplyEndMs);
        }
        streamer->stop(0);
    }

    // Brings the device to what it holds after long use, so that filling
    // what it keeps by design is not counted as growth: everything seen
    // once (service nodes, pages, logins, the libraries' own caches), the
    // context menus of the last ten seconds, which live that long unused,
    // and the stores of open forms and of open messages, full.
    void warmUp(SimulatedStreamer* streamer)
    {
        QElapsedTimer clock;
        clock.start();
        QStringList dialogs;
        do {
            Crawler crawler(setup(), streamer);
            crawler.run();
            dialogs += crawler.dialogs();
        } while (clock.elapsed() < kWarmUpMs);
        dialogs.removeDuplicates();
        // Each opening of a dialog's path makes a new dialog.
        for (int i = 0; i < kDialogsKept; ++i) {
            for (QString const& dialog : qAsConst(dialogs))
                TarnClient::wait(TarnClient::rows(CMPath::fromEncoded(dialog), 0, 9, {TarnRoles::Title()}), kReplyEndMs);
        }
    }

    struct Watched
    {
        QString what;
        CMVoidReply reply;
        QElapsedTimer sent;
    };

    std::unique_ptr<cloudsim::CloudServer> cloud;
    TarnHost host;
    CMWorker* worker = nullptr;
    QList<Watched> watched;
    int watchedCount = 0;
};

// A device on a bad network, under a cloud that fails in every way it can,
// for about a minute: every road is taken, every reply ends (but those
// left open on purpose, which are counted), and the memory does not grow.
TEST_F(Soak, everyRequestUnderFaultsEndsAndMemoryStaysFlat)
{
    // glibc raises its mmap threshold after each big block freed, so that
    // later big answers land in the arenas and leave them fragmented: the
    // resident size then creeps although the heap does not grow. A device
    // fixes the threshold; so does the soak.
    mallopt(M_MMAP_THRESHOLD, 512 * 1024);
    SimulatedStreamer streamer;
    streamer.makeActive();
    QElapsedTimer clock;
    clock.start();

    // TARN_SOAK_SECONDS makes it longer; TARN_SOAK_TRACE prints each crawl.
    int const soakMs = 1000 * (qEnvironmentVariableIsSet("TARN_SOAK_SECONDS") ? qEnvironmentVariableIntValue("TARN_SOAK_SECONDS") : 40);
    bool const trace = qEnvironmentVariableIsSet("TARN_SOAK_TRACE");
    long baselineKiB = -1;
    int underFaults = 0;
    int rounds = 0;
    int unanswered = 0;
    int leftOpen = 0;
    QSet<QString> played;
    {
        FaultMaker faults(cloud.get());
        warmUp(&streamer);
        // Requests the cloud holds back beyond the device's patience: they
        // run beside the rest and end in a time-out. They start after the
        // warm-up, when the cloud's server threads that hold them have
        // served before, so that their resuming is not taken for growth.
        for (char const* late : {"/airable/radios?soak=late", "/qobuz?soak=late"}) {
            QString const path = QString::fromLatin1(late).section(QLatin1Char('?'), 0, 0);
            cloud->setFault(path, cloudsim::Fault::delay(kDeviceTimeoutMs + 2000, 1));
            watch(QStringLiteral("rows of %1 held back").arg(late),
                  TarnClient::rows(at(QString::fromLatin1(late)), 0, 9, {TarnRoles::Title()}));
        }
        // The baseline is taken after the first 200 requests under faults.
        faults.strike();
        clock.restart();
        while ((clock.elapsed() < soakMs || faults.requestsUnderFaults() < 2000) && clock.elapsed() < soakMs + 105000) {
            Crawler crawler(setup(), &streamer);
            crawler.run();
            ++rounds;
            for (Crawler::Problem const& p : crawler.problems()) {
                if (p.result.startsWith(QLatin1String("no answer within")) || p.result.startsWith(QLatin1String("still preparing")))
                    ADD_FAILURE() << ++unanswered << ": " << p.path.toStdString() << "\n  " << p.request.toStdString() << ": "
                                  << p.result.toStdString();
            }
            QStringList tracks;
            for (Crawler::Play const& play : crawler.plays()) {
                if (!play.uri.isEmpty())
                    played << play.id.section(QLatin1Char('/'), 3, 3);
                if (play.id.contains(QLatin1String("/track/")) && tracks.size() < 5)
                    tracks << play.path;
            }
            for (QString const& program : crawler.programs()) {
                for (Crawler::Play const& play : crawler.plays()) {
                    if (play.id == program)
                        steerProgram(&streamer, play.path);
                }
            }
            // A playlist of the tracks met, fetched in one batch; and the
            // empty batch, which the module leaves unanswered on purpose.
            if (!tracks.isEmpty()) {
                auto batch = TarnClient::setData(TarnAirablePreparePlaylistItemsPath(), TarnRoles::Value(), tracks);
                watch(QStringLiteral("playlist batch of %1").arg(tracks.size()), batch);
                TarnClient::wait(batch, kReplyEndMs);
            }
            CMVoidReply const empty = TarnClient::setData(TarnAirablePreparePlaylistItemsPath(), TarnRoles::Value(), QStringList());
            TarnClient::wait(empty, 200);
            if (!empty.isFinished())
                ++leftOpen;
            if (trace)
                std::cout << "round " << rounds << ": " << faults.requests() << " requests, " << residentKiB() << " KiB, heap "
                          << heapKiB() << " KiB" << std::endl;
        }
        baselineKiB = faults.baselineKiB();
        QMap<QString, int> const roads = faults.roads();
        for (Road const& road : kRoads)
            EXPECT_GT(roads.value(QString::fromLatin1(road.name)), 0) << road.name;
        EXPECT_GE(faults.requestsUnderFaults(), 2000);
        underFaults = faults.requestsUnderFaults();
        std::cout << "soak: " << underFaults << " requests under faults in " << rounds << " crawls, " << clock.elapsed()
                  << " ms; by road:";
        for (auto it = roads.begin(); it != roads.end(); ++it)
            std::cout << " " << it.key().toStdString() << " " << it.value();
        std::cout << "\nfaults set:";
        QMap<QString, int> const kinds = faults.faults();
        for (auto it = kinds.begin(); it != kinds.end(); ++it)
            std::cout << " " << it.key().toStdString() << " " << it.value();
        std::cout << std::endl;
    }

    for (Watched const& w : watched) {
        TarnClient::wait(w.reply, qMax(0, kReplyEndMs - int(w.sent.elapsed())));
        EXPECT_TRUE(w.reply.isFinished()) << w.what.toStdString();
    }
    for (char const* kind : {"radio", "track", "feed.episode"})
        EXPECT_TRUE(played.contains(QString::fromLatin1(kind))) << "no " << kind << " played in " << rounds << " crawls";

    long const endKiB = residentKiB();
    double const bytesPerRequest = 1024.0 * (endKiB - baselineKiB) / qMax(1, underFaults);
    std::cout << "resident: " << baselineKiB << " KiB after 200 requests, " << endKiB << " KiB at the end ("
              << bytesPerRequest << " bytes a request), heap in use " << heapKiB() << " KiB; " << watchedCount
              << " replies watched beside the crawls, " << leftOpen << " left open on purpose" << std::endl;
    // A sanitizer keeps freed memory in quarantine, and an emulator's resident
    // size holds the code it has translated, which grows with every road the
    // crawls take for the first time: no figure to hold there.
    if (!sanitized() && !runsUnderEmulator()) {
        EXPECT_LE(endKiB - baselineKiB, kSoakGrowthKiB);
    }
}

// A cloud that refuses every token: the module authenticates again after
// each refusal, with no pause, and the request waits for a token that
// works. The rate is what a device maker must know of.
TEST_F(Soak, aTokenAlwaysRefusedIsAuthenticatedAgainWithoutPauseUntilItWorks)
{
    auto first = TarnClient::rows(worker->prefixPath(), 0, 9, {TarnRoles::Title()});
    ASSERT_TRUE(TarnClient::wait(first, 10000));
    cloud->clearLog();

    cloud->setFault(QStringLiteral("/airable/radios"), cloudsim::Fault::expiredToken(-1));
    auto const refused = TarnClient::rows(at(QStringLiteral("/airable/radios")), 0, 9, {TarnRoles::Title()});
    EXPECT_FALSE(TarnClient::wait(refused, 5000)) << "left open while every token is refused";
    int const authentications = cloud->requestsTo(QStringLiteral("/authentication")).size();
    cloud->clearFaults();

    EXPECT_TRUE(TarnClient::wait(refused, 10000)) << "answered once a token works";
    EXPECT_FALSE(refused.hasError());
    std::cout << "always-refused token: " << authentications << " authentications in 5 s" << std::endl;
    EXPECT_GT(authentications, 50);
}

} // namespace
