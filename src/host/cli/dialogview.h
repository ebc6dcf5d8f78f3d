#pragma once

#include "cmpath.h"
#include "tarnoauth2.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QVector>

// A dialog as a device's interface draws it, read from its rows: texts,
// fields with their kind and rules, buttons, links to open elsewhere and
// logins on a service's page. Clients tell a dialog from a listing by its
// container type; the rows say the rest.
namespace DialogView {

// The listing's own roles are those of a dialog.
bool isDialog(QJsonObject const& ownRoles);

// The option lists of the select fields among rows, to be read before
// describe() can name the options.
QVector<CMPath> optionLists(QJsonArray const& rows);

// The option rows of a list as [{"value", "title"}].
QJsonArray options(QJsonArray const& optionRows);

// The dialog whose rows, numbered from from, are rows (as keyed by role
// name): {"kind", "text", "fields", "buttons", "links", "logins",
// "options", "lists"}, the lists holding only what the dialog has; "lists"
// are rows that open a further list, as a menu's "Add to playlist" does.
// optionsByList holds options() of each list of optionLists(), by encoded
// path.
QJsonObject describe(QJsonArray const& rows, int from, QHash<QString, QJsonArray> const& optionsByList);

// The path a row of a dialog is used by when it has none of its own: a
// login on a service's page is activated at its flow path.
CMPath actionPath(QJsonObject const& row);

// A login on a service's page, and its ways to log in; an empty record for
// any other row.
bool isLogin(QJsonObject const& row);
TarnOAuth2Info loginOf(QJsonObject const& row);

} // namespace DialogView
