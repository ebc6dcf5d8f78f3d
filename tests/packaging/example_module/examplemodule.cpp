#include "cmworker.h"

// The smallest module: a named worker whose tree has no rows yet.
extern "C" __attribute__((visibility("default"))) CMAbstractWorker*
worker_create(QObject*, QHash<QString, QVariant> const& parameters)
{
    return new CMNodesWorker(parameters, QStringLiteral("Example"));
}
