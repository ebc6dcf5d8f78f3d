#pragma once

#include "originguard.h"

#include <QString>
#include <memory>

class EventHub;
class WebApi;

// The web explorer's HTTP side: the page's files from the program's
// resources, the JSON interface under /api/, the event stream at
// /api/events and the address a browser login comes back to, /back. It
// serves on threads of its own; the interface's calls are handed to the
// WebApi's thread and their answers awaited. Every request must pass the
// OriginGuard.
class WebServer
{
public:
    WebServer(WebApi* api, EventHub* hub);
    ~WebServer();

    // Listens on address:port (port 0: a free one). False, with the
    // reason, when it can't.
    bool start(QString const& address, int port, QString* error);
    int port() const;
    // Ends the event streams, then the server.
    void stop();

    // How long a call may wait for the module before the page is told so.
    void setCallLimitMs(int ms) { mCallLimitMs = ms; }

private:
    struct Impl;
    std::unique_ptr<Impl> mImpl;
    int mCallLimitMs = 40000;
};
