#include "webserver.h"

#include "backgroundlistener.h"
#include "eventhub.h"
#include "webapi.h"

#include <QFile>
#include <QJsonDocument>
#include <QUrl>
#include <httplib.h>

#include <chrono>
#include <thread>

namespace {

// A page that went away frees its stream's thread at the next beat, and no
// stream holds one for longer than its life; the page then opens another.
auto const kBeat = std::chrono::seconds(10);
auto const kStreamLife = std::chrono::minutes(5);

// The page may show covers and play streams from anywhere, and talks to
// this server only.
char const kPolicy[] = "default-src 'self'; img-src * data:; media-src *; connect-src 'self'; "
                       "frame-ancestors 'none'";

char const kBackPage[] = "<!DOCTYPE html><html><head><meta charset=\"utf-8\"><title>Logged in</title></head>"
                         "<body><p>The login has ended; the explorer carries on in its own tab. "
                         "You may close this one.</p></body></html>";

std::string contentType(QString const& file)
{
    if (file.endsWith(QLatin1String(".html")))
        return "text/html; charset=utf-8";
    if (file.endsWith(QLatin1String(".js")))
        return "text/javascript; charset=utf-8";
    if (file.endsWith(QLatin1String(".css")))
        return "text/css; charset=utf-8";
    if (file.endsWith(QLatin1String(".svg")))
        return "image/svg+xml";
    return "application/octet-stream";
}

void refuse(httplib::Response& response, int status, QString const& why)
{
    response.status = status;
    response.set_content(why.toStdString() + "\n", "text/plain; charset=utf-8");
}

} // namespace

struct WebServer::Impl
{
    WebApi* api;
    EventHub* hub;
    httplib::Server http;
    std::thread thread;
    OriginGuard guard;
    int port = -1;

    bool passes(httplib::Request const& request, httplib::Response& response, bool checkOrigin) const
    {
        QString const why = guard.refusal(QString::fromStdString(request.get_header_value("Host")),
                                          checkOrigin ? QString::fromStdString(request.get_header_value("Origin"))
                                                      : QString());
        if (why.isEmpty())
            return true;
        refuse(response, 403, why);
        return false;
    }
};

WebServer::WebServer(WebApi* api, EventHub* hub) : mImpl(std::make_unique<Impl>())
{
    mImpl->api = api;
    mImpl->hub = hub;
    Impl* const impl = mImpl.get();
    httplib::Server& http = impl->http;

    http.set_pre_routing_handler([impl](httplib::Request const& request, httplib::Response& response) {
        // The browser comes back from a service's page by a redirect, which
        // says nothing of its origin; that visit only ends a login that
        // waits for it.
        bool const back = request.path == "/back";
        if (!impl->passes(request, response, !back))
            return httplib::Server::HandlerResponse::Handled;
        response.set_header("Content-Security-Policy", kPolicy);
        response.set_header("X-Content-Type-Options", "nosniff");
        response.set_header("Cache-Control", "no-store");
        return httplib::Server::HandlerResponse::Unhandled;
    });

    auto const page = [](httplib::Request const& request, httplib::Response& response) {
        QString name = QString::fromStdString(request.path).mid(1);
        if (name.isEmpty())
            name = QStringLiteral("index.html");
        // Only the resources' own names: nothing with a way up or down.
        if (name.contains(QLatin1Char('/')) || name.startsWith(QLatin1Char('.'))) {
            refuse(response, 404, QStringLiteral("No such page"));
            return;
        }
        QFile file(QStringLiteral(":/serve/page/") + name);
        if (!file.open(QIODevice::ReadOnly)) {
            refuse(response, 404, QStringLiteral("No such page: %1").arg(name));
            return;
        }
        QByteArray const bytes = file.readAll();
        response.set_content(bytes.constData(), std::size_t(bytes.size()), contentType(name));
    };
    http.Get("/back", [impl](httplib::Request const& request, httplib::Response& response) {
        QString const url = QStringLiteral("http://%1%2")
                                .arg(QString::fromStdString(request.get_header_value("Host")),
                                     QString::fromStdString(request.target));
        if (!impl->api->cameBack(url)) {
            refuse(response, 409, QStringLiteral("No login waits for the browser to come back."));
            return;
        }
        response.set_content(kBackPage, "text/html; charset=utf-8");
    });

    http.Get(R"(/[A-Za-z0-9_.-]*)", page);

    http.Get("/api/events", [impl](httplib::Request const& request, httplib::Response& response) {
        quint64 last = impl->hub->latest();
        // The browser sends back the last id it saw; anything else starts
        // the stream at the present.
        bool known = false;
        quint64 const seen =
            QByteArray::fromStdString(request.get_header_value("Last-Event-ID")).toULongLong(&known);
        if (known)
            last = seen;
        auto const started = std::chrono::steady_clock::now();
        response.set_header("X-Accel-Buffering", "no");
        response.set_chunked_content_provider(
            "text/event-stream", [impl, last, started](std::size_t, httplib::DataSink& sink) mutable {
                std::string text;
                for (EventHub::Event const& event : impl->hub->after(last, kBeat)) {
                    text += EventHub::wireText(event);
                    last = event.id;
                }
                if (impl->hub->isClosed() || std::chrono::steady_clock::now() - started > kStreamLife) {
                    sink.done();
                    return true;
                }
                if (text.empty())
                    text = ": beat\n\n";
                return sink.write(text.data(), text.size());
            });
    });

    auto const answerCall = [this, impl](httplib::Request const& request, httplib::Response& response) {
        WebApi::Call call;
        call.method = QString::fromStdString(request.method);
        call.route = QString::fromStdString(request.matches[1]);
        call.query = QUrlQuery(QUrl(QString::fromStdString(request.target)).query());
        if (request.method == "POST") {
            // A form of another site can't send JSON without asking first.
            if (request.get_header_value("Content-Type").rfind("application/json", 0) != 0) {
                refuse(response, 415, QStringLiteral("The interface takes JSON (application/json)."));
                return;
            }
            QJsonParseError error{};
            QJsonDocument const body = QJsonDocument::fromJson(QByteArray::fromStdString(request.body), &error);
            if (!body.isObject()) {
                refuse(response, 400, QStringLiteral("The body must be a JSON object."));
                return;
            }
            call.body = body.object();
        }
        struct Waiting
        {
            std::mutex mutex;
            std::condition_variable done;
            QJsonObject answer;
            bool answered = false;
        };
        auto const waiting = std::make_shared<Waiting>();
        QMetaObject::invokeMethod(impl->api, [impl, call, waiting] {
            impl->api->handle(call, [waiting](QJsonObject const& answer) {
                {
                    std::lock_guard<std::mutex> lock(waiting->mutex);
                    waiting->answer = answer;
                    waiting->answered = true;
                }
                waiting->done.notify_all();
            });
        }, Qt::QueuedConnection);
        std::unique_lock<std::mutex> lock(waiting->mutex);
        if (!waiting->done.wait_for(lock, std::chrono::milliseconds(mCallLimitMs), [&] { return waiting->answered; })) {
            waiting->answer = WebApi::failure(QStringLiteral("timeout"),
                                              QStringLiteral("No answer within %1 s").arg(mCallLimitMs / 1000));
        }
        response.set_content(QJsonDocument(waiting->answer).toJson(QJsonDocument::Compact).toStdString(),
                             "application/json");
    };
    http.Get(R"(/api/([a-z/]+))", answerCall);
    http.Post(R"(/api/([a-z/]+))", answerCall);
}

WebServer::~WebServer()
{
    stop();
}

bool WebServer::start(QString const& address, int port, QString* error)
{
    Impl* const impl = mImpl.get();
    std::string const host = address.toStdString();
    impl->port = port == 0 ? impl->http.bind_to_any_port(host) : (impl->http.bind_to_port(host, port) ? port : -1);
    if (impl->port <= 0) {
        *error = port == 0 ? QStringLiteral("no free port on %1").arg(address)
                           : QStringLiteral("can't listen on %1 port %2 (in use?)").arg(address).arg(port);
        return false;
    }
    impl->guard = OriginGuard(OriginGuard::authoritiesFor(address, impl->port));
    return listenInBackground(&impl->http, &impl->thread, impl->port, error);
}

int WebServer::port() const
{
    return mImpl->port;
}

void WebServer::stop()
{
    mImpl->hub->close();
    if (!mImpl->thread.joinable())
        return;
    mImpl->http.stop();
    mImpl->thread.join();
}
