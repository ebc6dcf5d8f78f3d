#pragma once

#include <QString>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace httplib {
class Server;
}

// A loopback HTTP server with one route per way a transfer can end:
//   /ok                "hello"
//   /status/<n>        status n with the body "status body"
//   /slow              answers after 5 s, or at once when the server stops
//   /bytes/<n>         n bytes with a Content-Length
//   /chunked/<n>       n bytes, chunked, so the length is not announced
//   /cut               announces 100 bytes, sends 10 and closes
//   /redirect          302 to /ok
//   /echo/<header>     the value of that request header
class TestServer
{
public:
    TestServer();
    ~TestServer();

    int port() const { return mPort; }
    QString url(QString const& path) const;

private:
    std::unique_ptr<httplib::Server> mServer;
    std::thread mThread;
    int mPort = 0;
    std::mutex mMutex;
    std::condition_variable mStopped;
    bool mStopping = false;
};
