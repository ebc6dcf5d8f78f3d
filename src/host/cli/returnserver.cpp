#include "returnserver.h"
#include "backgroundlistener.h"

#include <httplib.h>

#include <thread>

namespace {

char const kReturnPath[] = "/back";
char const kDonePage[] = "<!DOCTYPE html><html><head><meta charset=\"utf-8\"><title>tarn-host</title></head>"
                         "<body><p>The login has ended. You may close this page; tarn-host carries on.</p>"
                         "</body></html>";

} // namespace

struct ReturnServer::Listener
{
    httplib::Server http;
    std::thread thread;
    int port = -1;
};

ReturnServer::ReturnServer(CameBack cameBack) : mListener(std::make_unique<Listener>())
{
    mListener->http.Get(kReturnPath, [this, cameBack](httplib::Request const& request, httplib::Response& response) {
        cameBack(address() + QString::fromStdString(request.target).mid(int(sizeof kReturnPath) - 1));
        response.set_content(kDonePage, "text/html; charset=utf-8");
    });
}

ReturnServer::~ReturnServer()
{
    if (!mListener->thread.joinable())
        return;
    mListener->http.stop();
    mListener->thread.join();
}

bool ReturnServer::start(QString* error)
{
    mListener->port = mListener->http.bind_to_any_port("127.0.0.1");
    if (mListener->port <= 0) {
        *error = QStringLiteral("no free port on 127.0.0.1 to come back to");
        return false;
    }
    return listenInBackground(&mListener->http, &mListener->thread, mListener->port, error);
}

QString ReturnServer::address() const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(mListener->port).arg(QLatin1String(kReturnPath));
}
