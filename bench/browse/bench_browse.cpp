// A rows request for a page of 100 items through the worker, against a bare
// QNetworkAccessManager GET of the same URL plus JsonParser on the body, in
// the same run and against the same simulated cloud.
#include "JsonParser.h"
#include "platformvalues.h"
#include "tarnconstants.h"
#include "tarnmediadata.h"
#include "tarnplaylogicdata.h"
#include "simulatedstreamer.h"
#include "tarnclient.h"
#include "tarnvalue.h"
#include "tarnhost.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrlQuery>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <atomic>
#include <log4cplus/appender.h>
#include <log4cplus/spi/loggingevent.h>
#include <log4cplus/initializer.h>
#include <log4cplus/logger.h>

namespace {

QByteArray listingOf(QString const& name, int count)
{
    QByteArray entries;
    for (int i = 0; i < count; ++i) {
        if (i)
            entries += ',';
        entries += QStringLiteral(
            R"({"id":["airable","radio","%1%2"],"title":"Station %2 – Ünïcode","url":"{base}/id/airable/radio/%1%2",)"
            R"("images":[{"url":"{base}/images/%1%2-s.png","width":100},{"url":"{base}/images/%1%2-l.png","width":600}],)"
            R"("streams":[{"id":["airable","radio.stream","%1%2-1"],"url":"{base}/st/%1%2/1","codec":{"name":"mp3","bitrate":128}},)"
            R"({"id":["airable","radio.stream","%1%2-2"],"url":"{base}/st/%1%2/2","codec":{"name":"aac","bitrate":64}}],)"
            R"("actions":[{"id":["airable","action","playlist.insert"],"title":"Add","url":"{base}/a/%1%2"}]})")
                       .arg(name)
                       .arg(i)
                       .toUtf8();
    }
    return "\"/" + name.toUtf8() + "\":{\"id\":[\"airable\",\"listing\",\"" + name.toUtf8()
        + "\"],\"title\":\"Bench\",\"content\":{\"entries\":[" + entries + "]}}";
}

// A radio stream's redirect with the event URLs the cloud hears of plays by.
QByteArray playDocuments()
{
    return R"("/st/play":{"id":["airable","redirect","play"],"url":"{base}/media/play.mp3",)"
           R"("events":{"start":"{base}/ev/start","stop":"{base}/ev/stop"}},)"
           R"("/ev/start":{"@body":""},"/ev/stop":{"id":["airable","listing","true"]})";
}

// A track that a player knows by its id alone, so that its prePlay fetches
// the item and then its stream; a service's login form and the home its
// submit answers; a program of two tracks and their streams.
QByteArray roadDocuments()
{
    QByteArray programTracks;
    QByteArray programStreams;
    for (char const* id : {"pa", "pb"}) {
        QByteArray const track = id;
        if (!programTracks.isEmpty())
            programTracks += ',';
        programTracks += R"({"id":["deezer","track",")" + track + R"("],"title":"Track )" + track
            + R"(","url":"{base}/deezer/tracks/)" + track + R"(","duration":60,"streams":[{"id":["deezer","radio.stream",")"
            + track + R"("],"url":"{base}/deezer/streams/)" + track + R"(","codec":{"name":"mp3","bitrate":128}}]})";
        programStreams += R"("/deezer/streams/)" + track + R"(":{"id":["deezer","redirect",")" + track
            + R"("],"url":"{base}/media/)" + track + R"(.mp3","events":{"start":"{base}/ev/start","stop":"{base}/ev/stop"}},)";
    }
    return R"("/qobuz/album/b1":{"id":["qobuz","listing","b1"],"title":"Album","content":{"entries":[)"
           R"({"id":["qobuz","track","bt1"],"title":"Bench track","url":"{base}/id/qobuz/track/bt1","duration":200,)"
           R"("artist":{"id":["qobuz","artist","ba"],"title":"Artist"},"album":{"id":["qobuz","album","b1"],"title":"Album"},)"
           R"("images":[{"url":"{base}/images/bt1.png","width":600}],)"
           R"("streams":[{"id":["qobuz","radio.stream","bt1"],"url":"{base}/qobuz/streams/bt1","codec":{"name":"flac","bitrate":1411}}]}]}},)"
           R"("/qobuz/streams/bt1":{"id":["qobuz","redirect","bt1"],"url":"{base}/media/bt1.flac",)"
           R"("events":{"start":"{base}/ev/start","stop":"{base}/ev/stop"}},)"
           R"("/deezer":{"id":["deezer","form","login"],"title":"Log in","signup":"https://signup.example/deezer","fields":[)"
           R"({"id":["deezer","field","username"],"title":"E-mail:","type":"text","required":true,"value":""},)"
           R"({"id":["deezer","field","password"],"title":"Password:","type":"password","required":true,"value":""},)"
           R"({"id":["deezer","field","client"],"type":"hidden","value":"tarn"}],"buttons":[)"
           R"({"id":["deezer","button","cancel"],"title":"Cancel","url":"{base}/"},)"
           R"({"id":["deezer","button","submit"],"title":"Log in","url":"{base}/deezer/login"}]},)"
           R"("/deezer/login":{"id":["deezer","listing","home"],"title":"Deezer","url":"{base}/deezer/home","content":{"entries":[]}},)"
           + programStreams +
           R"("/deezer/flow":{"id":["deezer","program","flow"],"title":"Flow","url":"{base}/deezer/flow","content":{"entries":[)"
           + programTracks + "]}}";
}

// The simulated cloud runs in a process of its own, so that its request log
// doesn't count in this process's memory.
struct CloudProcess
{
    QProcess process;
    QString base;

    QString baseUrl() const { return base; }
    QString secret() const { return QStringLiteral("bench-secret"); }

    bool start(QString const& dataDir)
    {
        process.setProgram(QStringLiteral(TARN_CLOUDSIM_PROGRAM));
        process.setArguments({QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--data"), dataDir,
                              QStringLiteral("--secret"), secret()});
        process.start();
        if (!process.waitForReadyRead(10000))
            return false;
        QString const line = QString::fromUtf8(process.readLine());
        base = line.section(QLatin1Char(' '), 3, 3).remove(QLatin1Char(','));
        return base.startsWith(QLatin1String("http://"));
    }
    ~CloudProcess()
    {
        process.terminate();
        process.waitForFinished(5000);
    }
};

// The cloud, the module and a bare client with a token of its own.
struct Setup
{
    QTemporaryDir dir;
    std::unique_ptr<CloudProcess> cloud;
    TarnHost host;
    CMWorker* worker = nullptr;
    QNetworkAccessManager manager;
    QString token;
    quint32 tokenTime = 0;
    qint64 tokenRead = 0;

    Setup()
    {
        QFile file(dir.filePath(QStringLiteral("bench.json")));
        file.open(QIODevice::WriteOnly);
        file.write("{" + listingOf(QStringLiteral("a"), 100) + "," + listingOf(QStringLiteral("b"), 100) + ","
                   + playDocuments() + "," + roadDocuments() + "}");
        file.close();
        cloud = std::make_unique<CloudProcess>();
        if (!cloud->start(dir.path()))
            qFatal("the simulated cloud did not start");
        PlatformValues values;
        values.baseUrl = cloud->baseUrl();
        values.secret = cloud->secret();
        values.pageSize = 100;
        values.apply();
        worker = qobject_cast<CMWorker*>(host.loadModule(QStringLiteral(TARN_MODULE_FILE), {}));
        authenticate();
    }

    QByteArray get(QNetworkRequest const& request)
    {
        QNetworkReply* reply = manager.get(request);
        QEventLoop loop;
        QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        QByteArray body = reply->readAll();
        reply->deleteLater();
        return body;
    }

    void authenticate()
    {
        QString const device = QStringLiteral("BENCH"), locale = QStringLiteral("en-US"), salt = QStringLiteral("salt");
        QUrl url(cloud->baseUrl() + QStringLiteral("/authentication"));
        QUrlQuery q;
        q.addQueryItem(QStringLiteral("device"), device);
        q.addQueryItem(QStringLiteral("locale"), locale);
        q.addQueryItem(QStringLiteral("salt"), salt);
        q.addQueryItem(QStringLiteral("signature"),
                       QString::fromLatin1(QCryptographicHash::hash((device + locale + salt + cloud->secret()).toUtf8(),
                                                                    QCryptographicHash::Md5).toHex()));
        url.setQuery(q);
        QJsonObject const answer = QJsonDocument::fromJson(get(QNetworkRequest(url))).object();
        token = answer.value(QStringLiteral("token")).toString();
        tokenTime = quint32(answer.value(QStringLiteral("time")).toDouble());
        tokenRead = QDateTime::currentSecsSinceEpoch();
    }

    QNetworkRequest signedRequest(QString const& path) const
    {
        quint32 const now = tokenTime + quint32(QDateTime::currentSecsSinceEpoch() - tokenRead);
        QByteArray const digest = QCryptographicHash::hash((token + cloud->secret() + QString::number(now)).toUtf8(),
                                                           QCryptographicHash::Md5).toHex();
        QNetworkRequest request(QUrl(cloud->baseUrl() + path));
        request.setRawHeader("Authorization", "Basic " + (token.toUtf8() + ':' + digest).toBase64());
        return request;
    }
};

Setup& setup()
{
    static Setup s;
    return s;
}

void report(benchmark::State& state, std::vector<double>& micros)
{
    std::sort(micros.begin(), micros.end());
    if (micros.empty())
        return;
    state.counters["p50_us"] = micros[micros.size() / 2];
    state.counters["p99_us"] = micros[std::min(micros.size() - 1, micros.size() * 99 / 100)];
}

QStringList const kRoles{TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Path(), TarnRoles::Icon(),
                         TarnRoles::Context()};

// Alternating between two listings defeats the one-entry cache, so every
// request crosses the cloud, as two clients on two listings do.
void WorkerRowsRoad(benchmark::State& state)
{
    Setup& s = setup();
    CMPath const paths[2] = {s.worker->addPrefix(s.cloud->baseUrl() + QStringLiteral("/a")),
                             s.worker->addPrefix(s.cloud->baseUrl() + QStringLiteral("/b"))};
    std::vector<double> micros;
    int n = 0;
    for (auto _ : state) {
        auto const start = std::chrono::steady_clock::now();
        auto reply = TarnClient::rows(paths[n++ & 1], 0, 99, kRoles);
        TarnClient::wait(reply, 30000);
        if (reply.value().rows().size() != 100)
            state.SkipWithError("wrong row count");
        micros.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    }
    report(state, micros);
}

void BareGetAndParse(benchmark::State& state)
{
    Setup& s = setup();
    QString const paths[2] = {QStringLiteral("/a"), QStringLiteral("/b")};
    std::vector<double> micros;
    int n = 0;
    for (auto _ : state) {
        auto const start = std::chrono::steady_clock::now();
        QByteArray const body = s.get(s.signedRequest(paths[n++ & 1]));
        portable::utils::JsonParser parser;
        if (!parser.parse(body))
            state.SkipWithError("bad body");
        benchmark::DoNotOptimize(parser.root()->firstChild());
        micros.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    }
    report(state, micros);
}

// Times every iteration of `road`; `prepare` runs untimed before each. Both
// say whether they succeeded.
template <typename Prepare, typename Road>
void timeRoad(benchmark::State& state, Prepare prepare, Road road)
{
    std::vector<double> micros;
    for (auto _ : state) {
        state.PauseTiming();
        bool const ready = prepare();
        state.ResumeTiming();
        auto const start = std::chrono::steady_clock::now();
        if (!ready || !road()) {
            state.SkipWithError("the road failed");
            break;
        }
        micros.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    }
    report(state, micros);
}

template <typename Road>
void timeRoad(benchmark::State& state, Road road)
{
    timeRoad(state, [] { return true; }, road);
}

// The transport's share of a road: a GET and a parse of each cloud call it
// makes, one after the other as the module makes them.
bool bareCalls(Setup& s, QStringList const& paths)
{
    for (QString const& path : paths) {
        QByteArray const body = s.get(s.signedRequest(path));
        portable::utils::JsonParser parser;
        if (!parser.parse(body))
            return false;
        benchmark::DoNotOptimize(parser.root()->firstChild());
    }
    return true;
}

template <typename T>
bool answered(CMReply<T> const& reply)
{
    return TarnClient::wait(reply, 30000) && !reply.hasError();
}

// A radio row's play: the set-data on its prePlay path until the playable
// answer; the module asks the cloud for the stream's redirect.
void RadioPrePlayRoad(benchmark::State& state)
{
    Setup& s = setup();
    TarnRoles roles;
    roles.setMediaData(TarnMediaData().setResources(
        {TarnResource().setData(s.cloud->baseUrl() + QStringLiteral("/st/play")).setUid(QStringLiteral("0")).__variant()}));
    int n = 0;
    timeRoad(state, [&] {
        CMPath const item = s.worker->addPrefix(s.cloud->baseUrl() + QStringLiteral("/radio/%1").arg(n++));
        roles.setPath(item);
        return answered(TarnClient::setData(s.worker->addPrefix(QStringLiteral("preplay:") + item.base()),
                                            TarnRoles::Value(), roles.__variant()));
    });
}

void RadioPrePlayBare(benchmark::State& state)
{
    Setup& s = setup();
    timeRoad(state, [&] { return bareCalls(s, {QStringLiteral("/st/play")}); });
}

// A track that the player knows by its id alone: the module fetches the
// item, then its stream's redirect.
void TrackPrePlayRoad(benchmark::State& state)
{
    Setup& s = setup();
    CMPath const prePlay =
        s.worker->addPrefix(QStringLiteral("preplay?serviceType=qobuz&dataType=track&objectId=bt1"));
    QVariant const roles = TarnRoles().setPath(prePlay).__variant();
    timeRoad(state, [&] { return answered(TarnClient::setData(prePlay, TarnRoles::Value(), roles)); });
}

void TrackPrePlayBare(benchmark::State& state)
{
    Setup& s = setup();
    timeRoad(state,
             [&] { return bareCalls(s, {QStringLiteral("/id/qobuz/track/bt1"), QStringLiteral("/qobuz/streams/bt1")}); });
}

QStringList const kDialogRoles{TarnRoles::Title(), TarnRoles::Type(),  TarnRoles::Path(),     TarnRoles::Id(),
                               TarnRoles::Value(), TarnRoles::Edit(), TarnRoles::MediaData()};

// A service's login form: the rows of the service's path, which the module
// answers with the way to the form's nodes, and the form's rows.
CMPath openLoginForm(Setup& s)
{
    auto opened = TarnClient::rows(s.worker->addPrefix(s.cloud->baseUrl() + QStringLiteral("/deezer")), 0, 49, kDialogRoles);
    if (!answered(opened) || !opened.value().hasRowsRedirect())
        return CMPath();
    CMPath const form = opened.value().rowsRedirect();
    auto rows = TarnClient::rows(form, 0, 49, kDialogRoles);
    return answered(rows) && rows.value().rowsCount() == 4 ? form : CMPath();
}

// Before each, untimed, a look at an album, as a person comes to the form
// from somewhere else: the form's answer is then not the one the module
// holds, and the form crosses the cloud.
void LoginFormRoad(benchmark::State& state)
{
    Setup& s = setup();
    CMPath const album = s.worker->addPrefix(s.cloud->baseUrl() + QStringLiteral("/qobuz/album/b1"));
    timeRoad(
        state, [&] { return answered(TarnClient::rows(album, 0, 9, kRoles)); },
        [&] { return !openLoginForm(s).isEmpty(); });
}

void LoginFormBare(benchmark::State& state)
{
    Setup& s = setup();
    timeRoad(state, [&] { return bareCalls(s, {QStringLiteral("/deezer")}); });
}

// The form filled in and sent: two fields typed, the submit pressed, until
// the answer of the cloud's home. Only the submit is timed; the form is
// opened anew for each.
void LoginSubmitRoad(benchmark::State& state)
{
    Setup& s = setup();
    CMPath form;
    auto type = [&](QString const& field, QString const& text) {
        return answered(TarnClient::setData(form + (QLatin1Char(':') + field), TarnRoles::Value(),
                                            TarnValue().setString_(text).__variant()));
    };
    timeRoad(
        state, [&] { return !(form = openLoginForm(s)).isEmpty(); },
        [&] {
            return type(QStringLiteral("username"), QStringLiteral("me@example.com"))
                && type(QStringLiteral("password"), QStringLiteral("secret"))
                && answered(TarnClient::setData(form + QStringLiteral(":submit"), TarnRoles::Activate(), true));
        });
}

void LoginSubmitBare(benchmark::State& state)
{
    Setup& s = setup();
    timeRoad(state, [&] {
        return bareCalls(s, {QStringLiteral("/deezer/login?client=tarn&username=me%40example.com&password=secret")});
    });
}

// A program's next track: the player's skip, through the program's play
// logic, until the streamer plays the next track's stream.
void ProgramNextRoad(benchmark::State& state)
{
    Setup& s = setup();
    SimulatedStreamer streamer;
    streamer.makeActive();
    TarnRoles program;
    program.setPath(s.worker->addPrefix(s.cloud->baseUrl() + QStringLiteral("/deezer/flow")));
    program.setTitle(TrString(QStringLiteral("Flow")));
    program.setMediaData(
        TarnMediaData().setMetaData(TarnMetaData().setPlayLogicPath(TarnAirableProgramPlayLogicPath())));
    streamer.play(program);
    // Checked after every event the streamer's thread serves, not at ticks
    // of a clock, which would add up to a tick to every skip.
    auto playing = [&](QString const& uri) {
        QElapsedTimer elapsed;
        elapsed.start();
        QTimer deadlineCheck;
        deadlineCheck.start(5);
        while (!(streamer.state() == TarnPlayLogicData::Playing && streamer.uri() == uri)) {
            if (elapsed.elapsed() > 30000)
                return false;
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return true;
    };
    QString const media[2] = {s.cloud->baseUrl() + QStringLiteral("/media/pa.mp3"),
                              s.cloud->baseUrl() + QStringLiteral("/media/pb.mp3")};
    if (!playing(media[0])) {
        state.SkipWithError("the program did not start");
        return;
    }
    int n = 1;
    timeRoad(state, [&] {
        CMReply<QVariant> const skipped = streamer.next();
        return answered(skipped) && playing(media[n++ & 1]);
    });
    streamer.stop(TarnPlayLogicStopReason::User);
}

void ProgramNextBare(benchmark::State& state)
{
    Setup& s = setup();
    timeRoad(state, [&] { return bareCalls(s, {QStringLiteral("/deezer/flow"), QStringLiteral("/deezer/streams/pb")}); });
}

long residentKiB()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    statm.open(QIODevice::ReadOnly);
    QList<QByteArray> const fields = statm.readAll().split(' ');
    return fields.value(1).toLong() * 4;
}

// Memory after many browse requests: one listing held, nothing growing.
void ManyBrowseRequests(benchmark::State& state)
{
    Setup& s = setup();
    CMPath const paths[2] = {s.worker->addPrefix(s.cloud->baseUrl() + QStringLiteral("/a")),
                             s.worker->addPrefix(s.cloud->baseUrl() + QStringLiteral("/b"))};
    auto browse = [&](int count) {
        for (int i = 0; i < count; ++i) {
            auto reply = TarnClient::rows(paths[i & 1], 0, 99, kRoles);
            TarnClient::wait(reply, 30000);
        }
    };
    for (auto _ : state) {
        browse(1000); // warm: caches, connections, allocator pools
        long const before = residentKiB();
        browse(state.range(0));
        long const after = residentKiB();
        state.counters["rss_before_KiB"] = before;
        state.counters["rss_after_KiB"] = after;
        state.counters["growth_KiB"] = after - before;
    }
}

// Counts the events the cloud has answered, from the module's own log line.
class AnsweredEvents : public log4cplus::Appender
{
public:
    std::atomic<int> count{0};
    ~AnsweredEvents() override { destructorImpl(); }
    void close() override {}

protected:
    void append(log4cplus::spi::InternalLoggingEvent const& event) override
    {
        if (event.getMessage() == LOG4CPLUS_TEXT("Report event success"))
            ++count;
    }
};

// Memory after many plays of a radio, each as a player makes it: the
// stream resolved through the prePlay path, then its start and its stop
// reported on the state-change path, which the cloud hears of as events.
void ManyRadioPlays(benchmark::State& state)
{
    Setup& s = setup();
    TarnRoles roles;
    roles.setMediaData(TarnMediaData().setResources(
        {TarnResource().setData(s.cloud->baseUrl() + QStringLiteral("/st/play")).setUid(QStringLiteral("0")).__variant()}));
    CMPath const stateChange = s.worker->addPrefix(TarnAirableStateChange());
    log4cplus::SharedAppenderPtr const appender(new AnsweredEvents);
    auto& answered = static_cast<AnsweredEvents&>(*appender).count;
    log4cplus::Logger module = log4cplus::Logger::getInstance(LOG4CPLUS_TEXT("CB_Airable"));
    module.addAppender(appender);
    module.setAdditivity(false);
    module.setLogLevel(log4cplus::DEBUG_LOG_LEVEL);
    int streamId = 0;
    auto play = [&](int count) {
        for (int i = 0; i < count; ++i) {
            CMPath const item = s.worker->addPrefix(s.cloud->baseUrl() + QStringLiteral("/radio/%1").arg(streamId));
            roles.setPath(item);
            auto prepared = TarnClient::setData(s.worker->addPrefix(QStringLiteral("preplay:") + item.base()),
                                                TarnRoles::Value(), roles.__variant());
            TarnClient::wait(prepared, 30000);
            if (prepared.hasError())
                state.SkipWithError("prePlay failed");
            for (int playerState : {TarnPlayLogicData::Playing, TarnPlayLogicData::Stopped}) {
                TarnPlayLogicData report;
                report.setTrackRoles(TarnRoles().setPath(item)).setState(playerState).setStreamId(streamId);
                auto reported = TarnClient::setData(stateChange, TarnRoles::Value(), report.__variant());
                TarnClient::wait(reported, 30000);
            }
            ++streamId;
            // A radio plays for minutes: its events have long reached the
            // cloud when the next play starts.
            CMReply<QVariant> never;
            while (answered < 2 * streamId)
                TarnClient::wait(never, 1);
        }
    };
    for (auto _ : state) {
        play(1000);
        long const before = residentKiB();
        play(state.range(0));
        long const after = residentKiB();
        state.counters["rss_before_KiB"] = before;
        state.counters["rss_after_KiB"] = after;
        state.counters["growth_KiB"] = after - before;
    }
    module.removeAppender(appender);
    module.setLogLevel(log4cplus::OFF_LOG_LEVEL);
}

} // namespace

BENCHMARK(WorkerRowsRoad)->Unit(benchmark::kMicrosecond)->Iterations(2000);
BENCHMARK(BareGetAndParse)->Unit(benchmark::kMicrosecond)->Iterations(2000);
BENCHMARK(RadioPrePlayRoad)->Unit(benchmark::kMicrosecond)->Iterations(1000);
BENCHMARK(RadioPrePlayBare)->Unit(benchmark::kMicrosecond)->Iterations(1000);
BENCHMARK(TrackPrePlayRoad)->Unit(benchmark::kMicrosecond)->Iterations(1000);
BENCHMARK(TrackPrePlayBare)->Unit(benchmark::kMicrosecond)->Iterations(1000);
BENCHMARK(LoginFormRoad)->Unit(benchmark::kMicrosecond)->Iterations(1000);
BENCHMARK(LoginFormBare)->Unit(benchmark::kMicrosecond)->Iterations(1000);
BENCHMARK(LoginSubmitRoad)->Unit(benchmark::kMicrosecond)->Iterations(1000);
BENCHMARK(LoginSubmitBare)->Unit(benchmark::kMicrosecond)->Iterations(1000);
BENCHMARK(ProgramNextRoad)->Unit(benchmark::kMicrosecond)->Iterations(1000);
BENCHMARK(ProgramNextBare)->Unit(benchmark::kMicrosecond)->Iterations(1000);
BENCHMARK(ManyBrowseRequests)->Arg(10000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(ManyRadioPlays)->Arg(20000)->Iterations(1)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    log4cplus::Initializer logInit;
    log4cplus::Logger::getRoot().setLogLevel(log4cplus::OFF_LOG_LEVEL);
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
