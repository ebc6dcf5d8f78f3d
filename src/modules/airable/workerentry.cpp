#include "cb_airable.h"

// The module's only export: the platform calls it once to make the worker,
// which the caller owns.
extern "C" __attribute__((visibility("default"))) CMAbstractWorker*
worker_create(QObject*, QHash<QString, QVariant> const& parameters)
{
    return new CMAirableWorker(parameters);
}
