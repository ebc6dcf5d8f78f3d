#pragma once

#include "command.h"
#include "pathtext.h"
#include "printer.h"
#include "replywaiter.h"

#include <QJsonObject>
#include <QVector>

enum ExitStatus
{
    ExitOk = 0,
    ExitErrorReply = 1,
    ExitUsage = 2,
};

// Runs commands against the tree and prints their results. It keeps what a
// shell session needs between commands: the current path, the paths it
// left, and the rows of the last listing, which commands may name by
// number.
class Session
{
public:
    Session(PathText const& paths, ReplyWaiter const& waiter, Printer* printer, int pageSize, bool inShell);

    // Returns the exit status of the command.
    int run(Command const& command);

private:
    struct Listing
    {
        CMPath path;
        int from = 0;
        int to = -1;
        QStringList roles;
        QVector<CMPath> rowPaths;
    };

    int list(Command const& command);
    int next();
    int get(Command const& command);
    int set(Command const& command);
    int play(Command const& command);
    int watch(Command const& command);
    int changeTo(Command const& command);
    int back();
    int help(Command const& command);

    int fetchAndPrint(CMPath path, int from, int to, QStringList const& roles, bool follow);
    // A path, or row N of the last listing; prints the error when neither.
    bool resolve(QString const& text, CMPath* path);
    bool await(CMVoidReply const& reply);
    int printPath();
    int fail(QString const& name, QString const& message, int status);

    PathText mPaths;
    ReplyWaiter mWaiter;
    Printer* mPrinter;
    int mPageSize;
    bool mInShell;
    CMPath mCurrent;
    QVector<CMPath> mVisited;
    Listing mLast;
};
