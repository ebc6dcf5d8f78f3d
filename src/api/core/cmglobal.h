#pragma once

#include "tarnhash.h"

#include <QStringList>

namespace CMGlobal {
// Zips role names with their values; a missing value is an invalid variant.
QHash<QString, QVariant> rolesValuesToHash(QStringList const& roles, QList<QVariant> const& values);
}

// Every role the framework knows, in a stable order.
QStringList CMAllRoles();
