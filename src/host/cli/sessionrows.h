#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>
#include <QVariant>
#include <limits>

// How the session's commands show rows and name them by number.

// The last row a listing can have: rows are numbered by the platform's int.
qint64 const kLastRow = std::numeric_limits<int>::max();

// A row's roles as an object, without those it has no value for.
QJsonObject presentRoles(QStringList const& roles, QList<QVariant> const& values);
// Rows read with these roles, one object each.
QJsonArray rowObjects(QStringList const& roles, QVariantList const& rows);
// A number names a row of the last listing; anything else is a path.
bool isRowNumber(QString const& text);
