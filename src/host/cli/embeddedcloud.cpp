#include "embeddedcloud.h"

bool startEmbeddedCloud(cloudsim::CloudServer* cloud, QStringList const& faults, QString* error)
{
    for (QString const& text : faults) {
        QString route;
        cloudsim::Fault fault;
        if (!cloudsim::parseFault(text, &route, &fault)) {
            *error = QStringLiteral("bad --fault '%1' (ROUTE=KIND[:VALUE][@TIMES])").arg(text);
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
