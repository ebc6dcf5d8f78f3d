#pragma once

#include "cloudserver.h"

#include <QStringList>

// Starts the simulated cloud on a free loopback port with its built-in
// catalogue, and the faults given as "ROUTE=KIND[:VALUE][@TIMES]". False,
// with the reason in *error, when a fault is malformed or the server can't
// start.
bool startEmbeddedCloud(cloudsim::CloudServer* cloud, QStringList const& faults, QString* error);
