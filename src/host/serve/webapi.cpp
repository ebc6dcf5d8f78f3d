#include "webapi.h"

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

WebApi::WebApi(PathText const& paths, ReplyWaiter const& waiter, int pageSize, CloudEar const& ear, EventHub* hub)
    : mHub(hub), mPaths(paths), mPrinter([this](QJsonObject const& object) { printed(object); }, paths),
      mSession(paths, waiter, &mPrinter, pageSize, false, ear),
      mPlayer(ear, [hub](QJsonObject const& event) { hub->publish("player", event); })
{
    mSession.setReturnPoints([this] { return returnPoint(); });
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
        runCommand(QStringLiteral("ls"), args, answer);
    } else if (!post && route == QLatin1String("data")) {
        runCommand(QStringLiteral("get"), {path}, answer);
    } else if (!post && route == QLatin1String("menu")) {
        runCommand(QStringLiteral("menu"), {path}, answer);
    } else if (post && route == QLatin1String("set")) {
        if (!call.body.contains(QLatin1String("value")) || given("role").isEmpty())
            answer(failure(QStringLiteral("usage"), QStringLiteral("set takes a path, a role and a value")));
        else
            runCommand(QStringLiteral("set"), {path, given("role"), jsonText(call.body.value("value"))}, answer);
    } else if (post && route == QLatin1String("oauth")) {
        runCommand(QStringLiteral("oauth"), {path}, answer, QStringLiteral("login"));
    } else if (post && route == QLatin1String("play")) {
        play(path, answer);
    } else if (post && route == QLatin1String("player")) {
        mPlayer.command(given("command"), answer);
    } else if (post && route == QLatin1String("player/report")) {
        mPlayer.report(given("state"), call.body.value("stream").toInt(), answer);
    } else if (!post && route == QLatin1String("player")) {
        answer(mPlayer.status());
    } else {
        answer(failure(QStringLiteral("usage"), QStringLiteral("No %1 /api/%2").arg(call.method, route)));
    }
}

void WebApi::enqueue(std::function<void()> job)
{
    // A command waits for the module with the event loop turning, in which
    // the next request may come: it waits its turn.
    mQueue.push_back(std::move(job));
    if (mBusy)
        return;
    mBusy = true;
    while (!mQueue.empty()) {
        auto const next = std::move(mQueue.front());
        mQueue.pop_front();
        next();
    }
    mBusy = false;
}

void WebApi::runCommand(QString const& name, QStringList const& args, Answer const& answer, QString const& later)
{
    enqueue([this, name, args, answer, later] {
        Command command;
        command.name = name;
        command.args = args;
        mPending = answer;
        mLater = later;
        mSession.run(command);
        if (mPending)
            mPending(failure(QStringLiteral("module"), QStringLiteral("%1 said nothing").arg(name)));
        mPending = nullptr;
        mLater.clear();
    });
}

void WebApi::printed(QJsonObject const& object)
{
    watchListing(object);
    if (mPending) {
        Answer const answer = std::move(mPending);
        mPending = nullptr;
        answer(object);
    } else if (!mLater.isEmpty()) {
        mHub->publish(mLater.toStdString(), object);
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

void WebApi::notify(QString const& text)
{
    mHub->publish("notification", {{"text", text}});
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
