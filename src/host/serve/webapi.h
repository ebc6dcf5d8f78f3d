#pragma once

#include "eventhub.h"
#include "oauthlogin.h"
#include "printer.h"
#include "session.h"
#include "webplayer.h"

#include <QJsonObject>
#include <QObject>
#include <QUrlQuery>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

class CMRowsWatch;

// The web interface's requests, carried out on the thread of the module's
// client. Browsing, reading, setting and logins are the command-line
// tool's own commands, so their answers are the objects that tarn-host
// --json prints: browsing commands run one after the other in one session,
// logins in a session of their own, so that a login waiting for the
// browser holds up no browsing. Playing goes to the browser as the player.
// Row changes of the listing shown last, notifications and the player's
// orders go out as events.
class WebApi : public QObject
{
    Q_OBJECT
public:
    struct Call
    {
        QString method; // GET or POST
        QString route;  // after /api/, e.g. "rows"
        QUrlQuery query;
        QJsonObject body;
    };
    // Takes the one answer of a call, on this object's thread.
    using Answer = std::function<void(QJsonObject const&)>;

    WebApi(PathText const& paths, ReplyWaiter const& waiter, int pageSize, CloudEar const& ear, EventHub* hub);
    ~WebApi() override;

    // Answers at once or later, exactly once.
    void handle(Call const& call, Answer const& answer);
    // The answer to a call that failed, as the tool's --json prints errors.
    static QJsonObject failure(QString const& name, QString const& message);

    // The address a login page sends the browser back to, and its visit
    // there, from any thread: the login that waits for it ends.
    void setReturnAddress(QString const& address) { mReturnAddress = address; }
    // False when no login waits.
    bool cameBack(QString const& url);
    // What the page shows of a notification: its text, and the buttons of
    // its dialog when it offers some.
    void notify(QString const& text, CMPath const& buttonsAt);

private:
    // A session of the tool with the commands waiting their turn in it, and
    // the answer owed by the command it runs.
    struct Lane
    {
        Lane(WebApi* api, PathText const& paths, ReplyWaiter const& waiter, int pageSize, CloudEar const& ear);
        Printer printer;
        Session session;
        std::deque<std::function<void()>> queue;
        bool busy = false;
        Answer pending;
        QString later;
    };

    // Runs one of the tool's commands in a lane; its first object is the
    // answer, and anything it prints later goes out as an event of type later.
    void runCommand(Lane& lane, QString const& name, QStringList const& args, Answer const& answer,
                    QString const& later = QString());
    // Runs the commands that may run now.
    void drain();
    static void runQueue(Lane& lane);
    void printed(Lane& lane, QJsonObject const& object);
    // Keeps an eye on the listing that an object shows, so that its row
    // changes reach the page.
    void watchListing(QJsonObject const& object);
    void play(QString const& path, Answer const& answer);
    OAuthLogin::ReturnPoint returnPoint();

    EventHub* mHub;
    PathText mPaths;
    Lane mBrowse;
    Lane mLogin;
    WebPlayer mPlayer;
    std::unique_ptr<CMRowsWatch> mWatch;
    QString mWatched;
    QString mReturnAddress;
    std::mutex mReturnMutex;
    std::unique_ptr<CMReply<QVariant>> mReturn;
};
