#include "cmroot.h"
#include "platformvalues.h"
#include "tarnclient.h"
#include "tarnconstants.h"
#include "tarnhost.h"

#include <QCoreApplication>
#include <QTextStream>
#include <log4cplus/configurator.h>
#include <log4cplus/initializer.h>

// Loads the module into the stand-in platform and asks it what needs no
// cloud: a permission probe and the title of a context view.
int main(int argc, char** argv)
{
    log4cplus::Initializer logInit;
    log4cplus::BasicConfigurator().configure();
    log4cplus::Logger::getRoot().setLogLevel(log4cplus::WARN_LOG_LEVEL);
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);

    PlatformValues().apply();
    TarnHost host;
    QString error;
    QString const module = argc > 1 ? QString::fromLocal8Bit(argv[1]) : TarnHost::defaultModulePath();
    auto* worker = qobject_cast<CMWorker*>(host.loadModule(module, {}, &error));
    if (!worker) {
        QTextStream(stderr) << error << '\n';
        return 1;
    }
    out << "loaded " << worker->name() << " at " << worker->prefixText() << '\n';

    auto probe = TarnClient::data(worker->addPrefix(QStringLiteral("anything")), {TarnRoles::Permission()});
    TarnClient::wait(probe, 5000);
    out << "probe: " << probe.value().value(0).toString() << '\n';

    auto title = TarnClient::data(worker->addPrefix(TarnAirablePrefixContext() + QStringLiteral(":e30=")),
                                  {TarnRoles::Title(), TarnRoles::Type(), TarnRoles::ContainerType()});
    TarnClient::wait(title, 5000);
    QList<QVariant> const values = title.value();
    out << "context: " << values.value(0).value<TrString>().toString() << ", " << values.value(1).toString()
        << ", " << values.value(2).toString() << '\n';
    out.flush();
    host.unloadAll();
    return 0;
}
