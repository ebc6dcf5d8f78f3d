#include "testserver.h"

#include <httplib.h>

#include <chrono>

TestServer::TestServer() : mServer(new httplib::Server)
{
    auto& s = *mServer;
    s.Get("/ok", [](httplib::Request const&, httplib::Response& res) { res.set_content("hello", "text/plain"); });
    s.Get(R"(/status/(\d+))", [](httplib::Request const& req, httplib::Response& res) {
        res.status = std::stoi(req.matches[1]);
        res.set_content("status body", "text/plain");
    });
    s.Get("/slow", [this](httplib::Request const&, httplib::Response& res) {
        std::unique_lock<std::mutex> lock(mMutex);
        mStopped.wait_for(lock, std::chrono::seconds(5), [this] { return mStopping; });
        res.set_content("late", "text/plain");
    });
    s.Get(R"(/bytes/(\d+))", [](httplib::Request const& req, httplib::Response& res) {
        res.set_content(std::string(std::stoul(req.matches[1]), 'x'), "application/octet-stream");
    });
    s.Get(R"(/chunked/(\d+))", [](httplib::Request const& req, httplib::Response& res) {
        size_t const total = std::stoul(req.matches[1]);
        res.set_chunked_content_provider("application/octet-stream", [total](size_t offset, httplib::DataSink& sink) {
            std::string const chunk(std::min<size_t>(1024, total - offset), 'x');
            sink.write(chunk.data(), chunk.size());
            if (offset + chunk.size() >= total)
                sink.done();
            return true;
        });
    });
    s.Get("/cut", [](httplib::Request const&, httplib::Response& res) {
        res.set_content_provider(100, "application/octet-stream", [](size_t offset, size_t, httplib::DataSink& sink) {
            if (offset > 0)
                return false;
            sink.write("0123456789", 10);
            return true;
        });
    });
    s.Get("/redirect", [](httplib::Request const&, httplib::Response& res) { res.set_redirect("/ok"); });
    s.Get(R"(/echo/(.+))", [](httplib::Request const& req, httplib::Response& res) {
        res.set_content(req.get_header_value(req.matches[1]), "text/plain");
    });

    mPort = s.bind_to_any_port("127.0.0.1");
    mThread = std::thread([this] { mServer->listen_after_bind(); });
    while (!mServer->is_running())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

TestServer::~TestServer()
{
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mStopping = true;
    }
    mStopped.notify_all();
    mServer->stop();
    mThread.join();
}

QString TestServer::url(QString const& path) const
{
    return QString("http://127.0.0.1:%1%2").arg(mPort).arg(path);
}
