#pragma once

#include "command.h"
#include "listingreader.h"
#include "pathtext.h"
#include "printer.h"
#include "replywaiter.h"

#include <QJsonObject>
#include <QVector>
#include <memory>

class CMRowsWatch;
class InterruptListener;

enum ExitStatus
{
    ExitOk = 0,
    ExitErrorReply = 1,
    ExitUsage = 2,
};

// Runs commands against the tree and prints their results. It keeps what a
// shell session needs between commands: the current path, the paths it
// left, and the rows of the last listing, which commands may name by
// number. Like a device's interface, it watches the listing it shows, so
// the content module keeps what it knows of it (its pages, its dialogs)
// until another listing takes its place.
class Session
{
public:
    Session(PathText const& paths, ReplyWaiter const& waiter, Printer* printer, int pageSize, bool inShell);
    ~Session();

    // With a listener, Ctrl-C abandons a wait and the command fails.
    void setInterrupts(InterruptListener* interrupts);
    // The process was asked to end during a command.
    bool ended() const { return mEnded; }

    // Returns the exit status of the command.
    int run(Command const& command);

private:
    struct Listing
    {
        ListingReader::Rows read;
        qint64 from = 0;
        qint64 to = -1;
        QStringList roles;
        QVector<CMPath> rowPaths;
        std::shared_ptr<CMRowsWatch> watch;
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

    int openAndPrint(CMPath const& path, qint64 from, qint64 to, QStringList const& roles, bool follow);
    int printListing(Listing listing);
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
    InterruptListener* mInterrupts = nullptr;
    bool mEnded = false;
    ListingReader mReader;
    CMPath mCurrent;
    QVector<CMPath> mVisited;
    Listing mLast;
};
