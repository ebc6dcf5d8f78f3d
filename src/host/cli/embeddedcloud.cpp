#include "embeddedcloud.h"

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
