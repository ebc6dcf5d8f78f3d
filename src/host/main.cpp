#include "cloudear.h"
#include "commandline.h"
#include "embeddedcloud.h"
#include "helptext.h"
#include "hostlogging.h"
#include "notificationdisplay.h"
#include "printer.h"
#include "serve.h"
#include "session.h"
#include "shell.h"

#include "tarnhost.h"

#include <QCoreApplication>
#include <QTextStream>
#include <log4cplus/initializer.h>
#include <malloc.h>
#include <unistd.h>

namespace {

// As a device's platform process does: its threads share two arenas of the
// C library's allocator rather than take one each (up to eight a core on a
// 64-bit machine). Each arena holds its own free memory, which no other
// thread uses: with the simulated cloud's eight server threads, the resident
// size crept on for hundreds of plays. Whoever sets the allocator's own
// variables decides instead.
void shareAllocatorArenas()
{
#ifdef M_ARENA_MAX
    if (!qEnvironmentVariableIsSet("MALLOC_ARENA_MAX")
        && !qEnvironmentVariable("GLIBC_TUNABLES").contains(QLatin1String("arena_max")))
        mallopt(M_ARENA_MAX, 2);
#endif
}

// Help needs neither a cloud nor the module.
bool isHelp(CommandLine const& line)
{
    return line.toolHelp || line.command.help || line.command.name == QLatin1String("help");
}

} // namespace

int main(int argc, char** argv)
{
    shareAllocatorArenas();
    log4cplus::Initializer logInit;
    QCoreApplication app(argc, argv);

    // "--version" alone, as the last word, asks for the tool's own version;
    // with a value after it, it is the device's software version.
    if (app.arguments().size() >= 2 && app.arguments().last() == QLatin1String("--version")) {
        QTextStream(stdout) << "tarn-host " << TARN_VERSION << '\n';
        return ExitOk;
    }

    CommandLine line;
    QString error;
    bool const parsed = parseCommandLine(app.arguments().mid(1), &line, &error);
    HostSettings& settings = line.settings;
    Printer usagePrinter(settings.json, PathText(QString(), QString()));
    if (!parsed) {
        usagePrinter.error(QStringLiteral("usage"), error);
        return ExitUsage;
    }
    if (line.toolHelp) {
        QTextStream(stdout) << toolHelp();
        return ExitOk;
    }
    if (!configureLogging(settings, &error)) {
        usagePrinter.error(QStringLiteral("usage"), error);
        return ExitUsage;
    }
    if (settings.cloudGiven && !settings.faults.isEmpty()) {
        usagePrinter.error(QStringLiteral("usage"), QStringLiteral("--fault works with the simulated cloud only"));
        return ExitUsage;
    }

    // Declared before the host, so that the module is gone before its cloud.
    cloudsim::CloudServer cloud(embeddedCloudOptions());
    if (!settings.cloudGiven && !isHelp(line)) {
        if (!startEmbeddedCloud(&cloud, settings.faults, &error)) {
            usagePrinter.error(QStringLiteral("cloud"), error);
            return ExitErrorReply;
        }
        settings.platform.baseUrl = cloud.baseUrl();
        if (!settings.secretGiven)
            settings.platform.secret = cloud.secret();
    }
    settings.platform.apply();

    // Before the host, so that it outlives the modules that show notifications.
    NotificationDisplay notifications;
    TarnHost host;
    QString workerPrefix = QStringLiteral("airable:");
    if (!isHelp(line)) {
        QString const module = settings.modulePath.isEmpty() ? TarnHost::defaultModulePath() : settings.modulePath;
        auto* worker = qobject_cast<CMWorker*>(host.loadModule(module, {}, &error));
        if (!worker) {
            usagePrinter.error(QStringLiteral("module"), error);
            return ExitErrorReply;
        }
        workerPrefix = worker->prefixText();
    }

    PathText const paths(workerPrefix, settings.platform.baseUrl);
    Printer printer(settings.json, paths);
    ReplyWaiter const waiter(settings.timeoutMs, isatty(STDOUT_FILENO) && isatty(STDERR_FILENO));
    bool const shell = line.command.name == QLatin1String("shell") && !line.command.help;
    int status = ExitOk;
    if (line.command.name == QLatin1String("serve") && !line.command.help) {
        status = runServe(line.command, settings, paths, CloudEar(settings.cloudGiven ? nullptr : &cloud),
                          &notifications);
    } else {
        // The session's watches end before the module goes.
        Session session(paths, waiter, &printer, settings.platform.pageSize, shell,
                        CloudEar(settings.cloudGiven ? nullptr : &cloud));
        status = shell ? runShell(&session, &printer) : session.run(line.command);
    }

    host.unloadAll();
    return status;
}
