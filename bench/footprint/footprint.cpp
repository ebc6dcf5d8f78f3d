// The resident memory a content module adds to a host. The host loads the
// module given, as the device's platform does, and browses it against a
// cloud running in a process of its own, so that the cloud's memory is not
// counted. Run once with the real module and once with the smallest one: the
// difference is the module's share.
#include "generator.h"
#include "platformvalues.h"
#include "tarnclient.h"
#include "tarnhost.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <cstdio>
#include <log4cplus/initializer.h>
#include <log4cplus/logger.h>

namespace {

QString const kBrowseA = QStringLiteral("/footprint/browse/a");
QString const kBrowseB = QStringLiteral("/footprint/browse/b");
QString const kLarge = QStringLiteral("/footprint/large");
QStringList const kRoles{TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Path(), TarnRoles::Icon()};

// The two listings that alternate, so that the module's one-entry cache never
// answers and every request crosses the cloud, and the large one.
bool writeData(QString const& dir)
{
    QByteArray const browse = benchdata::listing(benchdata::Size::Medium);
    QByteArray const large = benchdata::listing(benchdata::Size::Large);
    QFile file(QDir(dir).filePath(QStringLiteral("footprint.json")));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("{\"" + kBrowseA.toUtf8() + "\":" + browse + ",\"" + kBrowseB.toUtf8() + "\":" + browse + ",\""
               + kLarge.toUtf8() + "\":" + large + "}");
    std::printf("browse_listing_bytes=%lld large_listing_bytes=%lld\n", static_cast<long long>(browse.size()),
                static_cast<long long>(large.size()));
    return true;
}

// A field of /proc/self/status in KiB. Under qemu-user this is the emulator's
// process, which holds the guest's memory and its own translated code.
long statusKiB(char const* field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    QByteArray const name = QByteArray(field) + ':';
    for (QByteArray const& line : status.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size()).trimmed().split(' ').value(0).toLong();
    }
    return -1;
}

// Resets VmHWM to the present resident size, so that the next reading is the
// peak of what follows alone. False where the kernel doesn't allow it.
bool resetPeak()
{
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    return clear.open(QIODevice::WriteOnly) && clear.write("5") == 1;
}

// Lets the worker's thread and this one finish what a request left queued.
void settle(int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(5);
    }
}

struct Run
{
    CMWorker* worker;
    QString cloud;
    int failed = 0;

    CMPath path(QString const& cloudPath) const { return worker->addPrefix(cloud + cloudPath); }

    void rows(QString const& cloudPath, int from, int to)
    {
        auto reply = TarnClient::rows(path(cloudPath), from, to, kRoles);
        if (!TarnClient::wait(reply, 60000) || reply.hasError())
            ++failed;
    }
};

} // namespace

int main(int argc, char** argv)
{
    log4cplus::Initializer logInit;
    log4cplus::Logger::getRoot().setLogLevel(log4cplus::OFF_LOG_LEVEL);
    QCoreApplication app(argc, argv);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Loads a content module into a host, browses it against a cloud of its own, and prints the resident "
        "sizes (KiB) at idle, after the browse requests, and around one rows request of a 2 MB listing."));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("write-data"), QStringLiteral("Write the cloud's catalogue into DIR and exit."),
         QStringLiteral("DIR")},
        {QStringLiteral("module"), QStringLiteral("The module to load."), QStringLiteral("FILE")},
        {QStringLiteral("cloud"), QStringLiteral("Base URL of the cloud serving the catalogue."),
         QStringLiteral("URL")},
        {QStringLiteral("secret"), QStringLiteral("The cloud's secret."), QStringLiteral("S"),
         QStringLiteral("cloudsim-secret")},
        {QStringLiteral("requests"), QStringLiteral("Browse requests (default 10000)."), QStringLiteral("N"),
         QStringLiteral("10000")},
        {QStringLiteral("block-cache-size"),
         QStringLiteral("The platform value settings:airable/blockCacheSize (default: the host's)."),
         QStringLiteral("BYTES")},
    });
    parser.process(app);

    if (parser.isSet(QStringLiteral("write-data")))
        return writeData(parser.value(QStringLiteral("write-data"))) ? 0 : 1;
    if (!parser.isSet(QStringLiteral("module")) || !parser.isSet(QStringLiteral("cloud")))
        parser.showHelp(2);

    PlatformValues values;
    values.baseUrl = parser.value(QStringLiteral("cloud"));
    values.secret = parser.value(QStringLiteral("secret"));
    values.pageSize = 100;
    if (parser.isSet(QStringLiteral("block-cache-size")))
        values.blockCacheSize = parser.value(QStringLiteral("block-cache-size")).toInt();
    values.apply();

    TarnHost host;
    QString error;
    auto* worker = qobject_cast<CMWorker*>(host.loadModule(parser.value(QStringLiteral("module")), {}, &error));
    if (!worker) {
        std::fprintf(stderr, "airable-footprint: %s\n", qPrintable(error.isEmpty() ? QStringLiteral("no named worker")
                                                                                     : error));
        return 1;
    }
    Run run{worker, values.baseUrl};

    settle(1000);
    long const idle = statusKiB("VmRSS");
    long const idleAnon = statusKiB("RssAnon");

    int const requests = parser.value(QStringLiteral("requests")).toInt();
    QElapsedTimer browseTime;
    browseTime.start();
    for (int i = 0; i < requests; ++i)
        run.rows(i & 1 ? kBrowseB : kBrowseA, 0, 99);
    qint64 const browseMs = browseTime.elapsed();
    settle(500);
    long const browsed = statusKiB("VmRSS");
    long const browsedAnon = statusKiB("RssAnon");
    int const browseFailed = run.failed;

    bool const peakReset = resetPeak();
    long const beforeLarge = statusKiB("VmRSS");
    run.rows(kLarge, 0, 99);
    long const peak = statusKiB("VmHWM");
    int const largeFailed = run.failed - browseFailed;
    settle(500);
    long const heldLarge = statusKiB("VmRSS");

    // The large listing's tree goes once the next cloud call has gone out;
    // what stays then is what the caches and the heap keep of it.
    run.rows(kBrowseA, 0, 99);
    run.rows(kBrowseB, 0, 99);
    settle(500);
    long const afterLarge = statusKiB("VmRSS");
    long const afterLargeAnon = statusKiB("RssAnon");

    // RssAnon is the heap, the stacks and the libraries' data written to; the
    // rest of VmRSS is the pages read from the program's and libraries' files.
    std::printf("idle=%ld idle_anon=%ld browsed=%ld browsed_anon=%ld before_large=%ld peak=%ld peak_reset=%d "
                "held_large=%ld after_large=%ld after_large_anon=%ld requests=%d failed=%d large_failed=%d "
                "browse_ms=%lld\n",
                idle, idleAnon, browsed, browsedAnon, beforeLarge, peak, peakReset ? 1 : 0, heldLarge, afterLarge,
                afterLargeAnon, requests, browseFailed, largeFailed, static_cast<long long>(browseMs));
    std::fflush(stdout);
    host.unloadAll();
    return 0;
}
