#pragma once

#include "httpclientresult.h"

#include <QList>

// The transport's own account of the transfers that ended without an HTTP
// answer, process-wide, for the device's diagnostics: a module passes on
// only what its protocol with the cloud lets it say, while the person at
// the device needs the host and the reason. Safe from any thread; keeps
// the latest failures only.
namespace HttpClientFailureLog {

// Where the log stands now; since() a mark gives what came after it.
quint64 mark();
// The failures recorded after the mark, oldest first.
QList<HttpClientResult> since(quint64 mark);
void record(HttpClientResult const& failure);

} // namespace HttpClientFailureLog
