#pragma once

#include "pathtext.h"

#include <QJsonObject>
#include <QTextStream>

// Prints what commands produce: aligned tables for people, or exactly one
// compact JSON object per line for scripts. Errors go to standard error as
// one line, and in the JSON form also to standard output as
// {"error": {"name": ..., "message": ...}}.
class Printer
{
public:
    enum class Kind
    {
        Listing, // path, from, to, count, roles, rows, redirect, dialog, field
        Data,    // path, roles
        Set,     // path, role, value, reply, goto, closed, listing
        Path,    // path
        Change,  // path, change {type, from, to}
        Help,    // help
        Play,    // path, steps, uri, state, events
    };

    Printer(bool json, PathText const& paths);

    void print(Kind kind, QJsonObject const& body);
    void error(QString const& name, QString const& message);
    // The error line alone, for an error that a command's one object
    // carries itself.
    void errorLine(QString const& message);
    // Safe from any thread: the module shows notifications from its own.
    static void notification(QString const& text);

private:
    void listing(QJsonObject const& body);
    void dialogRows(QJsonObject const& body);
    void options(QJsonObject const& body);
    void set(QJsonObject const& body);
    void data(QJsonObject const& body);

    bool mJson;
    PathText mPaths;
    QTextStream mOut;
    QTextStream mErr;
};
