#pragma once

#include "cmrequest.h"

#include <QStringList>

// A client of the tree for tools and tests: sends requests through the root
// and waits for their answers while serving its own thread's events.
namespace TarnClient {

CMReply<TarnRowsRoles> rows(CMPath const& path, int fromRow, int toRow, QStringList const& roles);
CMReply<QList<QVariant>> data(CMPath const& path, QStringList const& roles);
CMReply<QVariant> setData(CMPath const& path, QString const& role, QVariant const& value);

// Serves events until the reply finishes or ms pass; true when it finished.
bool wait(CMVoidReply const& reply, int ms);

}
