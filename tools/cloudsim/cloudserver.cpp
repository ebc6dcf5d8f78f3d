#include "cloudserver.h"

#include "accounts.h"
#include "auth.h"
#include "boundedlog.h"
#include "catalogue.h"
#include "cloudjson.h"
#include "connectioncloser.h"
#include "eventlog.h"
#include "library.h"
#include "loginpage.h"
#include "logins.h"
#include "media.h"
#include "oauthsessions.h"
#include "phrasebook.h"
#include "programs.h"
#include "search.h"
#include "skiplimits.h"
#include "tlscontext.h"
#include "tokenstore.h"
#include "cloudsimlog.h"

#include <QUrlQuery>

#include <httplib.h>

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>

// Resources of a static library must be registered by hand, from outside
// any namespace.
static void initResources()
{
    Q_INIT_RESOURCE(cloudsim_data);
    Q_INIT_RESOURCE(cloudsim_languages);
    Q_INIT_RESOURCE(cloudsim_web);
}

namespace cloudsim {

namespace {

QString const BuiltInCatalogue = ":/cloudsim/data";
QString const BuiltInLanguages = ":/cloudsim/languages";
// Long enough to hear, short enough that a track ends while someone listens.
int const MediaSeconds = 8;

std::string errorObject(char const* itemId, QString const& message)
{
    QString const escaped = QString(message).replace('\\', "\\\\").replace('"', "\\\"");
    return QString(R"({"id":["airable","error","%1"],"message":"%2"})").arg(itemId, escaped).toStdString();
}

// About the memory a logged request holds: its texts, and the list nodes
// that hold the record and each of its headers.
qint64 footprintOf(RequestRecord const& r)
{
    qint64 const node = 16;
    qint64 bytes = node + qint64(sizeof r) + textFootprint(r.method) + textFootprint(r.path) + textFootprint(r.query);
    for (auto const& h : r.headers)
        bytes += node + qint64(sizeof h) + textFootprint(h.first) + textFootprint(h.second);
    return bytes;
}

// Images, media and the services' web pages are public, as on the cloud's
// content servers and the services' sites (the browser that opens a login
// page is not the device); the authentication call carries its own proof.
bool isPublic(QString const& path)
{
    return path == "/authentication" || path.startsWith("/images/") || path.startsWith("/media/")
           || path.startsWith("/web/");
}

// Keeps the answer valid JSON while making it at least `bytes` long.
std::string padded(std::string body, int bytes)
{
    size_t const wanted = static_cast<size_t>(std::max(bytes, 0));
    if (body.size() >= wanted)
        return body;
    std::string const open = body.size() >= 2 && body.back() == '}' ? ",\"padding\":\"" : "{\"padding\":\"";
    if (body.size() < 2 || body.back() != '}')
        body = "}";
    body.pop_back();
    std::string const close = "\"}";
    size_t const fill = wanted > body.size() + open.size() + close.size() ? wanted - body.size() - open.size() - close.size() : 0;
    return body + open + std::string(fill, ' ') + close;
}

// What the thread that serves one connection knows about it. The HTTP
// library serves each connection to its end in one task of its queue, so
// the task's thread is the connection's.
struct Connection
{
    std::string peer;
    int requests = 0;
};

thread_local Connection* tConnection = nullptr;

// Read as a pair, so that a connection is never half counted.
class ConnectionTally
{
public:
    void count(bool withoutRequest)
    {
        std::lock_guard<std::mutex> lock(mMutex);
        ++mCount.ended;
        if (withoutRequest)
            ++mCount.withoutRequest;
    }
    CloudServer::ConnectionCount read() const
    {
        std::lock_guard<std::mutex> lock(mMutex);
        return mCount;
    }
    void clear()
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mCount = {};
    }

private:
    mutable std::mutex mMutex;
    CloudServer::ConnectionCount mCount;
};

// The library's own pool, with a log line when a connection has ended. Over
// HTTPS the handshake is part of serving the connection, so a connection
// whose client broke it off ends here too, without a request.
class ConnectionQueue : public httplib::TaskQueue
{
public:
    ConnectionQueue(size_t threads, ConnectionTally* tally) : mPool(threads), mTally(tally) {}

    void enqueue(std::function<void()> serve) override
    {
        mPool.enqueue([serve = std::move(serve), tally = mTally] {
            Connection connection;
            tConnection = &connection;
            serve();
            tConnection = nullptr;
            if (connection.requests == 0)
                LOG4CPLUS_DEBUG(logger, "a connection closed before its first request");
            else
                LOG4CPLUS_DEBUG(logger, "connection " << connection.peer << " closed after " << connection.requests
                                                      << (connection.requests == 1 ? " request" : " requests"));
            tally->count(connection.requests == 0);
        });
    }
    void shutdown() override { mPool.shutdown(); }

private:
    httplib::ThreadPool mPool;
    ConnectionTally* mTally;
};

bool servesTls(CloudOptions const& options)
{
    return !options.tlsCertificate.isEmpty() || !options.tlsKey.isEmpty();
}

// Form fields as a browser encodes them, with "+" for a space; of a key
// given twice, the first.
QHash<QString, QString> fieldsOf(std::string const& encoded)
{
    QHash<QString, QString> fields;
    QUrlQuery const query(QString::fromStdString(encoded).replace('+', ' '));
    for (auto const& item : query.queryItems(QUrl::FullyDecoded)) {
        if (!fields.contains(item.first))
            fields.insert(item.first, item.second);
    }
    return fields;
}

Call callOf(httplib::Request const& req)
{
    Call call;
    call.method = QString::fromStdString(req.method);
    call.path = QString::fromStdString(req.path);
    if (call.method == "POST") {
        // The HTTP library mixes a posted form's fields into the query's.
        size_t const question = req.target.find('?');
        if (question != std::string::npos)
            call.params = fieldsOf(req.target.substr(question + 1));
        call.form = fieldsOf(req.body);
        return call;
    }
    for (auto const& p : req.params) {
        QString const key = QString::fromStdString(p.first);
        if (!call.params.contains(key))
            call.params.insert(key, QString::fromStdString(p.second));
    }
    return call;
}

Answer withFault(Answer const& answer, Fault const& fault)
{
    static char const garbage[] = "<html>\x01\x02 not json \xff\xfe";
    switch (fault.kind) {
    case Fault::Kind::Status:
        return {fault.value, errorObject("http", QString("Status %1").arg(fault.value))};
    case Fault::Kind::Garbage:
        return {200, std::string(garbage, sizeof garbage - 1)};
    case Fault::Kind::Truncated:
        return {answer.status, answer.body.substr(0, answer.body.size() / 2), answer.type};
    case Fault::Kind::Oversize:
        return {answer.status, padded(answer.body, fault.value), answer.type};
    // These act before the answer is made: the wait is over, and a
    // connection that could not be closed gets its answer after all.
    case Fault::Kind::Delay:
    case Fault::Kind::CloseConnection:
    case Fault::Kind::ExpiredToken:
    case Fault::Kind::RefusedSecret:
        return answer;
    }
    return answer;
}

} // namespace

class CloudServer::Impl
{
public:
    explicit Impl(CloudOptions const& options)
        : options(options),
          tokens(options.secret, options.tokenLifetimeSeconds, options.clockSkewSeconds),
          logins(catalogue, accounts, sessions),
          loginPage(catalogue, accounts, sessions, options.secret),
          library(catalogue, accounts),
          search(catalogue),
          skipLimits(options.skipsPerWindow, options.skipWindowSeconds),
          programs(catalogue, accounts, skipLimits),
          events(options.requestLogLimit, options.eventLogBytes),
          scheme(servesTls(options) ? "https" : "http"),
          log(options.requestLogLimit, options.requestLogBytes)
    {
        if (!servesTls(options)) {
            http = std::make_unique<httplib::Server>();
            return;
        }
        // A context that can't be set up leaves the server invalid, and
        // start() says why.
        http = std::make_unique<httplib::SSLServer>([this](SSL_CTX& context) {
            return setUpTls(&context, this->options.tlsCertificate, this->options.tlsKey, &tlsError);
        });
    }

    void handle(httplib::Request const& req, httplib::Response& res);
    void record(httplib::Request const& req);
    bool admitted(httplib::Request const& req, httplib::Response& res, Call* call);
    Answer authenticate(httplib::Request const& req);
    Answer answerFor(Call const& call, httplib::Request const& req);
    Answer contentFor(Call const& call);
    bool waitFor(int ms);
    std::string baseOf(httplib::Request const& req) const;

    CloudOptions const options;
    Catalogue catalogue;
    bool catalogueLoaded = false;
    Phrasebook phrasebook;
    bool phrasebookLoaded = false;
    TokenStore tokens;
    Accounts accounts;
    OAuthSessions sessions;
    Logins logins;
    LoginPage loginPage;
    Library library;
    Search search;
    SkipLimits skipLimits;
    Programs programs;
    EventLog events;
    FaultTable faults;
    std::string const scheme;
    QString tlsError;
    ConnectionTally connections;
    std::unique_ptr<httplib::Server> http;
    std::thread thread;
    int port = 0;
    QString error;

    mutable std::mutex mutex;
    std::condition_variable stopping;
    bool stopRequested = false;
    BoundedLog<RequestRecord, footprintOf> log;
};

void CloudServer::Impl::record(httplib::Request const& req)
{
    RequestRecord r;
    r.method = QString::fromStdString(req.method);
    r.path = QString::fromStdString(req.path);
    size_t const question = req.target.find('?');
    if (question != std::string::npos)
        r.query = QString::fromStdString(req.target.substr(question + 1));
    for (auto const& h : req.headers)
        r.headers.append(qMakePair(QString::fromStdString(h.first), QString::fromStdString(h.second)));
    r.time = QDateTime::currentDateTimeUtc();
    std::lock_guard<std::mutex> lock(mutex);
    log.append(r);
}

std::string CloudServer::Impl::baseOf(httplib::Request const& req) const
{
    std::string const host = req.get_header_value("Host");
    if (!host.empty())
        return scheme + "://" + host;
    return QString("%1://%2:%3").arg(QString::fromStdString(scheme), options.host).arg(port).toStdString();
}

bool CloudServer::Impl::admitted(httplib::Request const& req, httplib::Response& res, Call* call)
{
    if (isPublic(call->path))
        return true;
    if (faults.takeTokenFault(call->path))
        tokens.expireAll();
    TokenStore::Verdict const verdict =
        tokens.check(QString::fromStdString(req.get_header_value("Authorization")), &call->device, &call->locale);
    if (verdict == TokenStore::Verdict::Valid)
        return true;
    LOG4CPLUS_INFO(logger, req.method << " " << req.path << " refused: " << TokenStore::describe(verdict));
    res.status = 200;
    res.set_content(errorObject("authentication", TokenStore::describe(verdict)), "application/json");
    return false;
}

Answer CloudServer::Impl::authenticate(httplib::Request const& req)
{
    auto const param = [&req](char const* key) { return QString::fromStdString(req.get_param_value(key)); };
    QString const device = param("device");
    if (device.isEmpty() || !req.has_param("signature") || !req.has_param("salt"))
        return {200, errorObject("parameters", "device, salt and signature are required")};
    QByteArray const expected = authenticationSignature(device, param("locale"), param("salt"), options.secret);
    if (param("signature").toLatin1() != expected) {
        LOG4CPLUS_INFO(logger, "authentication of " << device.toStdString() << " refused: wrong signature");
        return {200, errorObject("signature", "Invalid signature")};
    }
    TokenStore::Token const token = tokens.issue(device, param("locale"));
    QString const escapedDevice = QString(device).replace('\\', "\\\\").replace('"', "\\\"");
    return {200, QString(R"({"id":["airable","accesstoken","%1"],"token":"%2","time":%3})")
                     .arg(escapedDevice, token.text)
                     .arg(token.time)
                     .toStdString()};
}

Answer CloudServer::Impl::answerFor(Call const& call, httplib::Request const& req)
{
    QString const& path = call.path;
    if (path == "/authentication")
        return authenticate(req);
    if (path.startsWith("/images/"))
        return {200, coverImage(path.mid(8).section('.', 0, 0)), "image/svg+xml"};
    if (path.startsWith("/media/"))
        return {200, toneWave(path.mid(7), MediaSeconds), "audio/wav"};
    Answer answer;
    if (loginPage.answer(call, &answer))
        return answer;
    if (call.method != "GET")
        return {405, errorObject("method", call.method + " is answered by the services' login pages only")};
    if (logins.answer(call, &answer))
        return answer;
    // An event is answered as the catalogue has it once it is recorded.
    events.record(call);
    answer = contentFor(call);
    library.personalise(call, &answer);
    return answer;
}

Answer CloudServer::Impl::contentFor(Call const& call)
{
    Answer answer;
    QString const behaviour = catalogue.behaviourOf(call.path);
    if (!behaviour.isEmpty()) {
        if (search.answer(behaviour, call, &answer) || programs.answer(behaviour, call, &answer)
            || library.answer(behaviour, call, &answer))
            return answer;
        return {500, errorObject("behaviour", "No behaviour '" + behaviour + "' for " + call.path)};
    }
    if (catalogue.answer(call.path, call.page(), &answer) || programs.answerTrack(call, &answer))
        return answer;
    return {404, errorObject("notfound", "Nothing here: " + call.path)};
}

// False when the server is stopping meanwhile.
bool CloudServer::Impl::waitFor(int ms)
{
    std::unique_lock<std::mutex> lock(mutex);
    return !stopping.wait_for(lock, std::chrono::milliseconds(ms), [this] { return stopRequested; });
}

void CloudServer::Impl::handle(httplib::Request const& req, httplib::Response& res)
{
    if (tConnection) {
        tConnection->peer = req.remote_addr + ":" + std::to_string(req.remote_port);
        ++tConnection->requests;
    }
    record(req);
    Call call = callOf(req);
    QString const& path = call.path;
    if (!admitted(req, res, &call))
        return;

    Fault fault;
    bool const faulty = faults.takeAnswerFault(path, &fault);
    if (faulty && fault.kind == Fault::Kind::Delay && !waitFor(fault.value))
        return;
    if (faulty && fault.kind == Fault::Kind::CloseConnection && closeConnection(req.local_port, req.remote_port))
        return;

    // A cloud that has revoked the device's secret answers its signature
    // as it answers a wrong one.
    Answer answer = faulty && fault.kind == Fault::Kind::RefusedSecret && path == "/authentication"
                        ? Answer{200, errorObject("signature", "Invalid signature")}
                        : answerFor(call, req);
    // The cloud's own texts in the language the device authenticated with;
    // a fault then breaks the answer that device would have got.
    phrasebook.translate(call.locale, &answer);
    replaceAll(answer.body, "{base}", baseOf(req));
    if (faulty)
        answer = withFault(answer, fault);
    res.status = answer.status;
    if (!answer.location.empty())
        res.set_header("Location", answer.location);
    if (!answer.body.empty() || answer.status != 204)
        res.set_content(answer.body, answer.type);
    LOG4CPLUS_DEBUG(logger, req.method << " " << req.target << " -> " << answer.status);
}

CloudServer::CloudServer(CloudOptions const& options) : mImpl(new Impl(options))
{
    initResources();
    // Answers go out in more than one write; without this, each waits for
    // the client's delayed acknowledgement.
    mImpl->http->set_tcp_nodelay(true);
    mImpl->http->new_task_queue = [tally = &mImpl->connections] {
        return new ConnectionQueue(CPPHTTPLIB_THREAD_POOL_COUNT, tally);
    };
    // The library's default also shares the port with any other listener
    // on it, so a second cloud would quietly take half of the first one's
    // requests; a port in use must be refused instead.
    mImpl->http->set_socket_options([](socket_t sock) {
        int const yes = 1;
        setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    auto const serve = [this](httplib::Request const& req, httplib::Response& res) { mImpl->handle(req, res); };
    mImpl->http->Get(".*", serve);
    // Only the services' login pages take a posted form.
    mImpl->http->Post("/web/.*", serve);
}

CloudServer::~CloudServer()
{
    stop();
}

bool CloudServer::start(int port)
{
    if (isRunning())
        return true;
    if (!mImpl->catalogueLoaded) {
        QString const dir = mImpl->options.dataDirectory.isEmpty() ? BuiltInCatalogue : mImpl->options.dataDirectory;
        if (!mImpl->catalogue.load(dir, &mImpl->error))
            return false;
        mImpl->catalogueLoaded = true;
    }
    if (!mImpl->phrasebookLoaded) {
        if (!mImpl->phrasebook.load(BuiltInLanguages, &mImpl->error))
            return false;
        mImpl->phrasebookLoaded = true;
    }
    if (!mImpl->http->is_valid()) {
        mImpl->error = mImpl->tlsError.isEmpty() ? QString("can't set up TLS") : mImpl->tlsError;
        return false;
    }
    std::string const host = mImpl->options.host.toStdString();
    errno = 0;
    if (port == 0) {
        mImpl->port = mImpl->http->bind_to_any_port(host);
    } else {
        mImpl->port = mImpl->http->bind_to_port(host, port) ? port : -1;
    }
    if (mImpl->port <= 0) {
        int const reason = errno;
        if (reason == EADDRINUSE)
            mImpl->error = QString("port %1 of %2 is in use").arg(port).arg(mImpl->options.host);
        else
            mImpl->error = QString("can't listen on %1:%2%3")
                               .arg(mImpl->options.host)
                               .arg(port)
                               .arg(reason ? QString(": ") + std::strerror(reason) : QString());
        return false;
    }
    {
        std::lock_guard<std::mutex> lock(mImpl->mutex);
        mImpl->stopRequested = false;
    }
    mImpl->thread = std::thread([this] { mImpl->http->listen_after_bind(); });
    while (!mImpl->http->is_running())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    LOG4CPLUS_INFO(logger, "listening at " << baseUrl().toStdString());
    return true;
}

void CloudServer::stop()
{
    if (!mImpl->thread.joinable())
        return;
    {
        std::lock_guard<std::mutex> lock(mImpl->mutex);
        mImpl->stopRequested = true;
    }
    mImpl->stopping.notify_all();
    mImpl->http->stop();
    // Idle keep-alive connections would hold the server's threads for their
    // whole time-out; clients that keep them open don't stop it from ending.
    closeConnections(mImpl->port);
    mImpl->thread.join();
}

bool CloudServer::isRunning() const
{
    return mImpl->thread.joinable() && mImpl->http->is_running();
}

QString CloudServer::errorString() const
{
    return mImpl->error;
}

int CloudServer::port() const
{
    return mImpl->port;
}

QString CloudServer::baseUrl() const
{
    return QString("%1://%2:%3").arg(QString::fromStdString(mImpl->scheme), mImpl->options.host).arg(mImpl->port);
}

QString CloudServer::secret() const
{
    return mImpl->options.secret;
}

QStringList CloudServer::routes() const
{
    QStringList paths = mImpl->catalogue.routes();
    for (QString const& service : mImpl->catalogue.loginServices())
        paths << '/' + service + "/login";
    for (QString const& service : mImpl->catalogue.oauthServices())
        paths << LoginPage::pathOf(service);
    paths.removeDuplicates();
    paths.sort();
    return paths;
}

QList<RequestRecord> CloudServer::requestLog() const
{
    std::lock_guard<std::mutex> lock(mImpl->mutex);
    return mImpl->log.entries();
}

CloudServer::ConnectionCount CloudServer::connectionCount() const
{
    return mImpl->connections.read();
}

QList<PlaybackEvent> CloudServer::eventLog() const
{
    return mImpl->events.events();
}

void CloudServer::setEventListener(std::function<void(PlaybackEvent const&)> listener)
{
    mImpl->events.setListener(std::move(listener));
}

void CloudServer::logIn(QString const& device, QString const& service, QString const& email)
{
    mImpl->accounts.logIn(device, service, email);
}

QString CloudServer::loggedInUser(QString const& device, QString const& service) const
{
    return mImpl->accounts.userOf(device, service);
}

QList<RequestRecord> CloudServer::requestsTo(QString const& path) const
{
    QList<RequestRecord> matching;
    for (auto const& r : requestLog()) {
        if (r.path == path)
            matching.append(r);
    }
    return matching;
}

void CloudServer::clearLog()
{
    {
        std::lock_guard<std::mutex> lock(mImpl->mutex);
        mImpl->log.clear();
    }
    mImpl->events.clear();
    mImpl->connections.clear();
}

void CloudServer::setFault(QString const& route, Fault const& fault)
{
    mImpl->faults.set(route, fault);
}

void CloudServer::clearFaults()
{
    mImpl->faults.clear();
}

void CloudServer::setTokenLifetime(int seconds)
{
    mImpl->tokens.setLifetime(seconds);
}

void CloudServer::expireTokens()
{
    mImpl->tokens.expireAll();
}

} // namespace cloudsim
