#pragma once

#include "pathtext.h"

#include <QJsonObject>
#include <QTextStream>
#include <functional>

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
        Program, // path, title, tracks, state, steps
        Player,  // command, state, track, restarted, reply, rating, path, positionMs, controls
        Login,   // path, flow, url, returned, closed, goto, listing
    };

    Printer(bool json, PathText const& paths);
    // Hands each object of the JSON form to sink instead of printing it,
    // errors included, for a program that passes them on.
    using Sink = std::function<void(QJsonObject const&)>;
    Printer(Sink sink, PathText const& paths);

    void print(Kind kind, QJsonObject const& body);
    // A track of a program as it starts: a line for people, nothing in the
    // JSON form, whose one object per command lists the tracks.
    void trackStarted(int number, QJsonObject const& track);
    // The login page to open, said at once, while the tool waits for the
    // browser to come back to back: in the JSON form the object {"url"}.
    void loginPage(QString const& url, QString const& back);
    // extra holds more about the error, such as what a refusal offers.
    void error(QString const& name, QString const& message, QJsonObject const& extra = QJsonObject());
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
    // What a press or a login's end closed, where it sends the user, and
    // that listing.
    void destination(QJsonObject const& body);
    void data(QJsonObject const& body);
    void player(QJsonObject const& body);
    void login(QJsonObject const& body);

    void emitJson(QJsonObject const& object);

    bool mJson;
    Sink mSink;
    PathText mPaths;
    QTextStream mOut;
    QTextStream mErr;
};
