#pragma once

#include "cloudear.h"
#include "command.h"
#include "listingreader.h"
#include "oauthlogin.h"
#include "pathtext.h"
#include "printer.h"
#include "programplayer.h"
#include "replywaiter.h"

#include <QJsonArray>
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
// until another listing takes its place, and it goes where a dialog's
// button sends the user. A program played in the shell goes on playing
// between commands, for the player command to act on.
class Session
{
public:
    Session(PathText const& paths, ReplyWaiter const& waiter, Printer* printer, int pageSize, bool inShell,
            CloudEar const& ear);
    ~Session();

    // With a listener, Ctrl-C abandons a wait and the command fails.
    void setInterrupts(InterruptListener* interrupts);
    // Where a browser login comes back to; by default a server of its own.
    void setReturnPoints(OAuthLogin::ReturnPoints points) { mReturnPoints = std::move(points); }
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
        QJsonArray rows;
        QVector<CMPath> rowPaths;
        QJsonObject dialog;
        // A context menu: its dialog is a menu of actions.
        bool menu = false;
        std::shared_ptr<CMRowsWatch> watch;
    };

    struct Failure
    {
        QString name;
        QString message;
    };

    // Browsing: listings and their pages, a path's roles, watching a
    // listing, and the paths the shell moves through.
    int list(Command const& command);
    int next();
    int get(Command const& command);
    int watch(Command const& command);
    int changeTo(Command const& command);
    int back();
    int printPath();
    int openAndPrint(CMPath const& path, qint64 from, qint64 to, QStringList const& roles, bool follow);
    int printListing(Listing listing);
    bool open(CMPath const& path, qint64 from, qint64 to, QStringList const& roles, bool follow, Listing* listing,
              Failure* failure);
    // Makes the listing the last one and returns what prints it.
    QJsonObject show(Listing listing);

    // Dialogs: their fields, setting values and pressing buttons.
    int set(Command const& command);
    QJsonObject describeDialog(Listing const& listing);
    // The select field of the last listing's dialog at path, if it is one.
    QJsonObject selectField(CMPath const& path) const;
    int listOptions(QJsonObject const& field);
    // Where a pressed button sends the user: the paths it closes, the path
    // it goes to and, when that can be browsed, its listing.
    int follow(CMPath const& button, QVariant const& answer, QJsonObject* body);
    // Goes where a dialog sends the user: names the path and, when it can be
    // browsed, shows its listing, which becomes the last one (and in the
    // shell the current path).
    int goTo(CMPath const& target, QJsonObject* body);
    // The fields of the button's dialog that break their rules, as their
    // value nodes would say it.
    QString brokenFields(CMPath const& button);

    // Playing: a row's stream, or a program and the player that runs it.
    int play(Command const& command);
    int playProgram(CMPath const& path, TarnRoles const& row, Command const& command);
    int player(Command const& command);
    int playerStatus();
    int programFailure(ProgramPlayer::Outcome const& outcome, QString const& what);
    // The track the program plays now, as the play logic publishes it.
    bool currentTrack(QJsonObject* track, TarnPlayLogicData* data);

    // Context menus, and logins on a service's page.
    int menu(Command const& command);
    int openMenu(CMPath const& context);
    int oauth(Command const& command);

    int help(Command const& command);
    // A path, or row N of the last listing; prints the error when neither.
    bool resolve(QString const& text, CMPath* path);
    // The place in the last listing's rows of row N; prints the error when
    // there is no such row.
    bool lastRow(QString const& text, int* index);
    // Row N of the last listing with the roles it was listed with; empty
    // when text names none.
    TarnRoles listedRow(QString const& text) const;
    // Waits for the reply; false, with *failure, unless it brought a value.
    bool settle(CMVoidReply const& reply, Failure* failure);
    // The same, printing the failure.
    bool await(CMVoidReply const& reply);
    // An error's message, and when the error has the default name, that of
    // a failed communication, the reason of the transport's latest failure
    // during this command: the module only says that the communication
    // failed, the transport says with which host and why. Refusals under
    // names of their own stay as they are.
    QString explained(QString const& errorName, QString const& message) const;
    int fail(QString const& name, QString const& message, int status);

    PathText mPaths;
    ReplyWaiter mWaiter;
    Printer* mPrinter;
    int mPageSize;
    bool mInShell;
    CloudEar mEar;
    InterruptListener* mInterrupts = nullptr;
    OAuthLogin::ReturnPoints mReturnPoints;
    bool mEnded = false;
    // Where the transport's failure log stood when the command began.
    quint64 mTransportMark = 0;
    // Why the reader's last wait failed.
    Failure mReadFailure;
    ListingReader mReader;
    CMPath mCurrent;
    QVector<CMPath> mVisited;
    Listing mLast;
    // The program that plays on between the shell's commands; null when
    // none does.
    std::unique_ptr<ProgramPlayer> mProgram;
};
