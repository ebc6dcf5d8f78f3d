#include "embeddedcloud.h"

cloudsim::CloudOptions embeddedCloudOptions()
{
    cloudsim::CloudOptions options;
    // A play makes four requests or so: the calls of the play under way are
    // among the latest thirty plays' requests, some 150 of 1.7 KB.
    options.requestLogLimit = 200;
    options.requestLogBytes = 256 * 1024;
    options.eventLogBytes = 64 * 1024;
    return options;
}

bool startEmbeddedCloud(cloudsim::CloudServer* cloud, QStringList const& faults, QString* error)
{
    for (QString const& text : faults) {
        QString route;
        cloudsim::Fault fault;
        QString why;
        if (!cloudsim::parseFault(text, &route, &fault, &why)) {
            *error = QStringLiteral("bad --fault '%1': %2").arg(text, why);
            return false;
        }
        cloud->setFault(route, fault);
    }
    if (!cloud->start(0)) {
        *error = QStringLiteral("cannot start the simulated cloud: %1").arg(cloud->errorString());
        return false;
    }
    return true;
}
