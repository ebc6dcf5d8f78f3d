#pragma once

#include "cloudserver.h"

#include <QStringList>

// The simulated cloud as this tool runs it in its own process. The tool
// reads its logs only for the calls of the play under way, so it keeps a
// short tail of them: a shell that plays for hours stays the size it was.
cloudsim::CloudOptions embeddedCloudOptions();

// Starts the simulated cloud on a free loopback port with its built-in
// catalogue, and the faults given as "ROUTE=KIND[:VALUE][@TIMES]". False,
// with the reason in *error, when a fault is malformed or the server can't
// start.
bool startEmbeddedCloud(cloudsim::CloudServer* cloud, QStringList const& faults, QString* error);
