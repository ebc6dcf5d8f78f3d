#include "serve.h"

#include "eventhub.h"
#include "interruptlistener.h"
#include "notificationdisplay.h"
#include "printer.h"
#include "session.h"
#include "webapi.h"
#include "webserver.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QTextStream>

namespace {

int const kDefaultPort = 8090;

bool isLoopback(QString const& address)
{
    return address == QLatin1String("localhost") || QHostAddress(address).isLoopback();
}

} // namespace

int runServe(Command const& command, HostSettings const& settings, PathText const& paths, CloudEar const& ear,
             NotificationDisplay* notifications)
{
    Printer printer(settings.json, paths);
    QString const address = command.option(QStringLiteral("host"), QStringLiteral("127.0.0.1"));
    bool portOk = false;
    int const port = command.option(QStringLiteral("port"), QString::number(kDefaultPort)).toInt(&portOk);
    if (!portOk || port < 0 || port > 65535) {
        printer.error(QStringLiteral("usage"),
                      QStringLiteral("--port takes a port from 0 (a free one) to 65535, not '%1'")
                          .arg(command.option(QStringLiteral("port"))));
        return ExitUsage;
    }
    bool const remote = !isLoopback(address);
    if (remote && !command.options.contains(QStringLiteral("allow-remote"))) {
        printer.error(QStringLiteral("usage"),
                      QStringLiteral("%1 is no loopback address: other machines could use the module and its "
                                     "logins. Add --allow-remote to serve them anyway")
                          .arg(address));
        return ExitUsage;
    }

    EventHub hub;
    WebApi api(paths, ReplyWaiter(settings.timeoutMs, false), settings.platform.pageSize, ear, &hub);
    WebServer server(&api, &hub);
    server.setCallLimitMs(settings.timeoutMs + 5000);
    QString error;
    if (!server.start(address == QLatin1String("localhost") ? QStringLiteral("127.0.0.1") : address, port, &error)) {
        printer.error(QStringLiteral("serve"), error);
        return ExitErrorReply;
    }
    QString const shown = remote && (address == QLatin1String("0.0.0.0") || address == QLatin1String("::"))
                              ? QStringLiteral("127.0.0.1")
                              : address;
    QString const base = QStringLiteral("http://%1:%2")
                             .arg(shown.contains(QLatin1Char(':')) ? QLatin1Char('[') + shown + QLatin1Char(']') : shown)
                             .arg(server.port());
    api.setReturnAddress(base + QStringLiteral("/back"));
    notifications->setListener([&api](QString const& text, CMPath const& buttonsAt) { api.notify(text, buttonsAt); });
    if (remote)
        printer.errorLine(QStringLiteral("warning: serving on %1, beyond this machine: anyone who reaches it can "
                                         "browse, log in and play as this device")
                              .arg(address));
    QTextStream(stdout) << "serving " << base << "/ (Ctrl-C ends)" << Qt::endl;

    InterruptListener interrupts;
    QObject::connect(&interrupts, &InterruptListener::interrupted, qApp, &QCoreApplication::quit);
    QObject::connect(&interrupts, &InterruptListener::terminated, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();

    notifications->setListener(nullptr);
    server.stop();
    return ExitOk;
}
