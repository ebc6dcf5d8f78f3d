#include "cloudserver.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <log4cplus/consoleappender.h>
#include <log4cplus/initializer.h>
#include <log4cplus/layout.h>
#include <log4cplus/logger.h>

#include <csignal>
#include <cstdio>
#include <pthread.h>

namespace {

void logToConsole(log4cplus::LogLevel level)
{
    log4cplus::SharedAppenderPtr console(new log4cplus::ConsoleAppender(true));
    console->setLayout(std::make_unique<log4cplus::PatternLayout>("%D{%H:%M:%S.%q} %-5p %m%n"));
    log4cplus::Logger server = log4cplus::Logger::getInstance("CloudSim");
    server.addAppender(console);
    server.setLogLevel(level);
}

} // namespace

int main(int argc, char** argv)
{
    log4cplus::Initializer logInit;
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("airable-cloudsim");
    QCoreApplication::setApplicationVersion(QStringLiteral(TARN_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        "A simulated music-aggregation cloud on loopback, over HTTP or HTTPS: device authentication,\n"
        "a catalogue of services, radios, podcasts and tracks from JSON files, and faults on demand.\n"
        "Point a device's base URL at the address it prints. Stop it with Ctrl-C.");
    QCommandLineOption const help = parser.addHelpOption();
    QCommandLineOption const version = parser.addVersionOption();
    QCommandLineOption port("port", "Port to listen on; 0 takes a free one (default 8088).", "PORT", "8088");
    QCommandLineOption host("host", "Address to listen on (default 127.0.0.1).", "ADDRESS", "127.0.0.1");
    QCommandLineOption data("data", "Read the catalogue from the *.json files in DIR instead of the built-in one.", "DIR");
    QCommandLineOption secret("secret", "The devices' shared secret (default cloudsim-secret).", "SECRET",
                              "cloudsim-secret");
    QCommandLineOption lifetime("token-lifetime", "Seconds an access token stays valid (default 3600).", "SECONDS",
                                "3600");
    QCommandLineOption skew("clock-skew", "Seconds the device's clock may be off (default 5).", "SECONDS", "5");
    QCommandLineOption fault("fault",
                             "Misbehave on a route; may be given several times. FAULT is ROUTE=KIND[:VALUE][@TIMES], "
                             "ROUTE a path or a prefix ending in '*'. KIND: status:CODE, delay:MS, garbage, "
                             "truncated (half the body), oversize:BYTES, close (no answer), expired-token, "
                             "refused-secret (on /authentication: the signature is refused). "
                             "TIMES: how many requests are hit (default all). "
                             "Example: --fault '/airable/radios/*=status:500@2'",
                             "FAULT");
    QCommandLineOption tlsCert("tls-cert",
                               "Serve HTTPS with the certificate in FILE (PEM: the cloud's, then any intermediates); "
                               "needs --tls-key.",
                               "FILE");
    QCommandLineOption tlsKey("tls-key", "The private key of --tls-cert (PEM).", "FILE");
    QCommandLineOption routes("routes", "Print the catalogue's paths and exit.");
    QCommandLineOption verbose("verbose", "Log every request and every connection that ends.");
    parser.addOptions({port, host, data, secret, lifetime, skew, fault, tlsCert, tlsKey, routes, verbose});
    // Bad usage ends with 2, as a bad --fault does, not with process()'s 1.
    if (!parser.parse(QCoreApplication::arguments())) {
        std::fprintf(stderr, "airable-cloudsim: %s\n", qPrintable(parser.errorText()));
        return 2;
    }
    if (parser.isSet(help))
        parser.showHelp(0);
    if (parser.isSet(version))
        parser.showVersion();

    bool ok = true;
    cloudsim::CloudOptions options;
    options.dataDirectory = parser.value(data);
    options.secret = parser.value(secret);
    options.host = parser.value(host);
    options.tokenLifetimeSeconds = parser.value(lifetime).toInt(&ok);
    if (ok)
        options.clockSkewSeconds = parser.value(skew).toInt(&ok);
    int const portNumber = ok ? parser.value(port).toInt(&ok) : 0;
    if (!ok || portNumber < 0 || portNumber > 65535) {
        std::fprintf(stderr, "airable-cloudsim: --port (0 to 65535), --token-lifetime and --clock-skew take numbers\n");
        return 2;
    }
    options.tlsCertificate = parser.value(tlsCert);
    options.tlsKey = parser.value(tlsKey);
    if (options.tlsCertificate.isEmpty() != options.tlsKey.isEmpty()) {
        std::fprintf(stderr, "airable-cloudsim: --tls-cert and --tls-key go together\n");
        return 2;
    }

    // Signals are taken by sigwait below, so no server thread may see them.
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGINT);
    sigaddset(&stopSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);

    logToConsole(parser.isSet(routes)    ? log4cplus::OFF_LOG_LEVEL
                 : parser.isSet(verbose) ? log4cplus::DEBUG_LOG_LEVEL
                                         : log4cplus::INFO_LOG_LEVEL);
    cloudsim::CloudServer server(options);
    for (QString const& text : parser.values(fault)) {
        QString route;
        cloudsim::Fault f;
        QString why;
        if (!cloudsim::parseFault(text, &route, &f, &why)) {
            std::fprintf(stderr, "airable-cloudsim: bad --fault '%s': %s\n", qPrintable(text), qPrintable(why));
            return 2;
        }
        server.setFault(route, f);
    }
    // Printing the paths needs no port of its own.
    if (!server.start(parser.isSet(routes) ? 0 : portNumber)) {
        std::fprintf(stderr, "airable-cloudsim: %s\n", qPrintable(server.errorString()));
        return 1;
    }
    if (parser.isSet(routes)) {
        for (QString const& route : server.routes())
            std::printf("%s\n", qPrintable(route));
        return 0;
    }
    std::printf("Simulated cloud at %s, secret '%s'\n", qPrintable(server.baseUrl()), qPrintable(server.secret()));
    std::fflush(stdout);

    int received = 0;
    sigwait(&stopSignals, &received);
    server.stop();
    return 0;
}
