#include "webapi.h"

#include "dialogview.h"
#include "sessionrows.h"

#include "cmglobal.h"
#include "cmroot.h"
#include "tarnclient.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

// A JSON value as the set command takes it, as text.
QString jsonText(QJsonValue const& value)
{
    QByteArray const wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(wrapped.mid(1, wrapped.size() - 2));
}

} // namespace

WebApi::Lane::Lane(WebApi* api, PathText const& paths, ReplyWaiter const& waiter, int pageSize, CloudEar const& ear)
    : printer([api, this](QJsonObject const& object) { api->printed(*this, object); }, paths),
      session(paths, waiter, &printer, pageSize, false, ear)
{
}

WebApi::WebApi(PathText const& paths, ReplyWaiter const& waiter, int pageSize, CloudEar const& ear, EventHub* hub)
    : mHub(hub), mPaths(paths), mBrowse(this, paths, waiter, pageSize, ear), mLogin(this, paths, waiter, pageSize, ear),
      mPlayer(ear, [hub](QJsonObject const& event) { hub->publish("player", event); })
{
    mLogin.session.setReturnPoints([this] { return returnPoint(); });
}

WebApi::~WebApi() = default;

QJsonObject WebApi::failure(QString const& name, QString const& message)
{
    return {{"error", QJsonObject{{"name", name}, {"message", message}}}};
}

void WebApi::handle(Call const& call, Answer const& answer)
{
    QString const& route = call.route;
    bool const post = call.method == QLatin1String("POST");
    auto const given = [&call](char const* key) {
        QString const fromBody = call.body.value(QLatin1String(key)).toString();
        return fromBody.isEmpty() ? call.query.queryItemValue(QLatin1String(key), QUrl::FullyDecoded) : fromBody;
    };
    QString const path = given("path").isEmpty() ? QStringLiteral("/") : given("path");
    if (!post && route == QLatin1String("rows")) {
        QStringList args{path};
        if (!given("from").isEmpty())
            args << given("from");
        if (!given("to").isEmpty())
            args << given("to");
        runCommand(mBrowse, QStringLiteral("ls"), args, answer);
    } else if (!post && route == QLatin1String("data")) {
        runCommand(mBrowse, QStringLiteral("get"), {path}, answer);
    } else if (!post && route == QLatin1String("menu")) {
        runCommand(mBrowse, QStringLiteral("menu"), {path}, answer);
    } else if (post && route == QLatin1String("set")) {
        if (!call.body.contains(QLatin1String("value")) || given("role").isEmpty())
            answer(failure(QStringLiteral("usage"), QStringLiteral("set takes a path, a role and a value")));
        else
            runCommand(mBrowse, QStringLiteral("set"), {path, given("role"), jsonText(call.body.value("value"))},
                       answer);
    } else if (post && route == QLatin1String("oauth")) {
        runCommand(mLogin, QStringLiteral("oauth"), {path}, answer, QStringLiteral("login"));
    } else if (post && route == QLatin1String("play")) {
        play(path, answer);
    } else if (post && route == QLatin1String("player")) {
        mPlayer.command(given("command"), answer);
    } else if (post && route == QLatin1String("player/report")) {
        mPlayer.report(given("state"), call.body.value("stream").toInt(), answer);
    } else if (!post && route == QLatin1String("player")) {
        // The number of the latest event goes with it: the page that asks
        // on coming anew knows which of the orders it heard are newer.
        QJsonObject status = mPlayer.status();
        status.insert("lastEvent", qint64(mHub->latest()));
        answer(status);
    } else {
        answer(failure(QStringLiteral("usage"), QStringLiteral("No %1 /api/%2").arg(call.method, route)));
    }
}

void WebApi::runCommand(Lane& lane, QString const& name, QStringList const& args, Answer const& answer,
                        QString const& later)
{
    lane.queue.push_back([this, &lane, name, args, answer, later] {
        Command command;
        command.name = name;
        command.args = args;
        lane.pending = answer;
        lane.later = later;
        lane.session.run(command);
        if (lane.pending)
            lane.pending(failure(QStringLiteral("module"), QStringLiteral("%1 said nothing").arg(name)));
        lane.pending = nullptr;
        lane.later.clear();
    });
    drain();
}

// A command waits for the module with the event loop turning, and the next
// request comes in that wait: a browsing command waits its turn. A login
// waits for the browser for up to the time-out. Started at the bottom of
// the stack, it lets browsing commands run within its wait and return;
// started within a browsing command's wait, it would keep that command
// from returning until the login ended. So a login starts only when no
// browsing command runs, and logins take turns among themselves.
void WebApi::drain()
{
    if (!mBrowse.busy)
        runQueue(mBrowse);
    if (!mBrowse.busy && !mLogin.busy)
        runQueue(mLogin);
}

void WebApi::runQueue(Lane& lane)
{
    lane.busy = true;
    while (!lane.queue.empty()) {
        auto const next = std::move(lane.queue.front());
        lane.queue.pop_front();
        next();
    }
    lane.busy = false;
}

void WebApi::printed(Lane& lane, QJsonObject const& object)
{
    watchListing(object);
    if (lane.pending) {
        Answer const answer = std::move(lane.pending);
        lane.pending = nullptr;
        answer(object);
    } else if (!lane.later.isEmpty()) {
        mHub->publish(lane.later.toStdString(), object);
    }
}

void WebApi::watchListing(QJsonObject const& object)
{
    QJsonObject const listing = object.contains("listing") ? object.value("listing").toObject() : object;
    if (!listing.contains("rows") || listing.contains("dialog"))
        return;
    QString const path = listing.value("path").toString();
    if (path == mWatched)
        return;
    mWatched = path;
    mWatch = std::make_unique<CMRowsWatch>(CMPath::fromEncoded(path));
    connect(mWatch.get(), &CMRowsWatch::changed, this, [this, path](QString const& type, int from, int to) {
        mHub->publish("change", {{"path", path}, {"change", QJsonObject{{"type", type}, {"from", from}, {"to", to}}}});
    });
}

void WebApi::play(QString const& text, Answer const& answer)
{
    CMPath const path = mPaths.parse(text);
    QStringList const roles{TarnRoles::Title(), TarnRoles::Path(), TarnRoles::MediaData(), TarnRoles::Icon()};
    TarnClient::data(path, roles).onFinished(this, [this, path, roles, answer](CMReply<QVariantList> const& reply) {
        if (reply.hasError()) {
            answer(failure(reply.error().name(), reply.error().messageText()));
            return;
        }
        mPlayer.play(path, TarnRoles(CMGlobal::rolesValuesToHash(roles, reply.value())), answer);
    });
}

void WebApi::notify(QString const& text, CMPath const& buttonsAt)
{
    if (buttonsAt.isEmpty()) {
        mHub->publish("notification", {{"text", text}});
        return;
    }
    // The page offers the dialog's buttons to press, as a dialog's.
    QStringList const roles = CMAllRoles();
    TarnClient::rows(buttonsAt, 0, 49, roles)
        .onFinished(this, [this, text, buttonsAt, roles](CMReply<TarnRowsRoles> const& reply) {
            QJsonArray const buttons =
                reply.hasError() ? QJsonArray()
                                 : DialogView::describe(rowObjects(roles, reply.value().rows()), 0, {})
                                       .value("buttons")
                                       .toArray();
            QJsonObject event{{"text", text}};
            if (!buttons.isEmpty()) {
                event.insert("path", QString(buttonsAt.toEncoded()));
                event.insert("buttons", buttons);
            }
            mHub->publish("notification", event);
        });
}

OAuthLogin::ReturnPoint WebApi::returnPoint()
{
    std::lock_guard<std::mutex> lock(mReturnMutex);
    mReturn = std::make_unique<CMReply<QVariant>>();
    return {mReturnAddress, *mReturn};
}

bool WebApi::cameBack(QString const& url)
{
    std::lock_guard<std::mutex> lock(mReturnMutex);
    if (!mReturn || mReturn->isFinished())
        return false;
    mReturn->setValue(url);
    return true;
}
