#include "backgroundlistener.h"

#include <httplib.h>

#include <chrono>

namespace {

// How long the listening thread may take to come up.
auto const kStartLimit = std::chrono::seconds(5);

} // namespace

bool listenInBackground(httplib::Server* http, std::thread* thread, int port, QString* error)
{
    *thread = std::thread([http] { http->listen_after_bind(); });
    auto const limit = std::chrono::steady_clock::now() + kStartLimit;
    while (!http->is_running()) {
        if (std::chrono::steady_clock::now() > limit) {
            *error = QStringLiteral("the server on port %1 did not come up").arg(port);
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}
