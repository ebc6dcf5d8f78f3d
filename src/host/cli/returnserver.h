#pragma once

#include <QString>
#include <functional>
#include <memory>

// The address a login page sends the browser back to: a small HTTP server
// of this tool on a free loopback port, serving one path. Each visit there
// is handed to cameBack, on a thread of the server, and the browser is told
// that it may close the page.
class ReturnServer
{
public:
    using CameBack = std::function<void(QString const& url)>;

    explicit ReturnServer(CameBack cameBack);
    ~ReturnServer();

    // Listens on a free port of 127.0.0.1; false, with the reason, when it
    // can't.
    bool start(QString* error);
    // The address to hand to the login: http://127.0.0.1:PORT/back
    QString address() const;

private:
    struct Listener;
    std::unique_ptr<Listener> mListener;
};
