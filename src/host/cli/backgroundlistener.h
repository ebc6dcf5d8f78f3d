#pragma once

#include <QString>
#include <thread>

namespace httplib {
class Server;
}

// Lets an HTTP server that is bound already listen on a thread of its own,
// and waits until it does, so that its address can be handed out at once.
// False, with the reason, when it did not come up in time.
bool listenInBackground(httplib::Server* http, std::thread* thread, int port, QString* error);
