#include "crawler.h"

#include "browser.h"
#include "cmglobal.h"
#include "simulatedstreamer.h"
#include "tarnactionreply.h"
#include "tarnclient.h"
#include "tarnconstants.h"
#include "tarnedit.h"
#include "tarnmediadata.h"
#include "tarnoauth2.h"
#include "tarnplaylogicdata.h"
#include "tarnrowsroles.h"
#include "tarnvalue.h"

namespace {

QStringList const& rowRoles()
{
    static QStringList const roles{TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Path(), TarnRoles::Id(),
                                   TarnRoles::MediaData()};
    return roles;
}

QStringList const& rowRolesWithContext()
{
    static QStringList const roles = rowRoles() + QStringList{TarnRoles::Context()};
    return roles;
}

// What a person sees of a dialog's rows, how a field is edited, and what a
// login on a service's own page offers.
QStringList const& dialogRoles()
{
    static QStringList const roles{TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Path(), TarnRoles::Id(),
                                   TarnRoles::Edit(), TarnRoles::Value()};
    return roles;
}

QString text(QVariant const& v)
{
    return v.userType() == qMetaTypeId<TrString>() ? v.value<TrString>().toString() : v.toString();
}

QString describe(CMError const& error)
{
    return error.name() + QStringLiteral(": ") + error.messageText();
}

QString describe(TarnRoles const& row)
{
    return QStringLiteral("'%1' (%2)").arg(text(row.value(TarnRoles::Title())), row.id());
}

// The type word inside an item id, "airable://deezer/form/login".
QString itemType(QString const& id)
{
    return id.section(QLatin1Char('/'), 3, 3);
}

} // namespace

Crawler::Setup Crawler::forWorker(CMWorker const* worker, QString const& cloudBaseUrl)
{
    Setup s;
    s.root = worker->prefixPath();
    s.servicePrefix = TarnAirableBrowseServicePrefix();
    s.dialogPrefixes = {worker->addPrefix(TarnAirablePrefixForm()), worker->addPrefix(TarnAirablePrefixMessage()),
                        worker->addPrefix(TarnAirablePrefixActionDialog())};
    s.pageSize = 25;
    s.mediaUrl = cloudBaseUrl + QStringLiteral("/media");
    s.user = QStringLiteral("me@example.com");
    s.password = QStringLiteral("secret");
    s.oauthPath = TarnAirableOAuthPath();
    // Nobody listens there: the crawl only looks at where the login page
    // sends the browser.
    s.returnAddress = QStringLiteral("http://127.0.0.1:9/oauth-done");
    return s;
}

Crawler::Crawler(Setup const& setup, SimulatedStreamer* streamer) : m_setup(setup), m_streamer(streamer) {}

void Crawler::run()
{
    enqueue(m_setup.root);
    while (!m_queue.isEmpty())
        list(m_queue.dequeue());
}

void Crawler::enqueue(CMPath const& path)
{
    QString const key = path.toEncoded();
    if (m_seen.contains(key))
        return;
    m_seen.insert(key);
    m_queue.enqueue(path);
}

void Crawler::problem(CMPath const& path, QString const& request, QString const& result)
{
    m_problems << Problem{path.toEncoded(), request, result};
}

// A page at a time from the first row, as a user interface scrolls, so
// that every page of the cloud is asked the way a device asks it.
void Crawler::list(CMPath const& path)
{
    int count = 0;
    for (int from = 0; from == 0 || from < count; from += m_setup.pageSize) {
        int const to = from + m_setup.pageSize - 1;
        QString const request = QStringLiteral("rows %1-%2").arg(from).arg(to);
        auto reply = TarnClient::rows(path, from, to, listingRoles());
        if (!TarnClient::wait(reply, m_setup.timeoutMs)) {
            problem(path, request, QStringLiteral("no answer within %1 ms").arg(m_setup.timeoutMs));
            return;
        }
        if (reply.hasError()) {
            problem(path, request, describe(reply.error()));
            return;
        }
        TarnRowsRoles const page = reply.value();
        if (page.hasRowsRedirect()) {
            ++m_redirectCount;
            if (from > 0)
                problem(path, request, QStringLiteral("a redirect to %1 behind the first page").arg(page.rowsRedirect().toEncoded()));
            else if (isDialog(path, page))
                answerDialog(path, page.rowsRedirect());
            else
                enqueue(page.rowsRedirect());
            return;
        }
        if (from == 0) {
            if (isDialog(path, page))
                return;
            m_listings << path.toEncoded();
            count = page.rowsCount();
        } else if (page.rowsCount() != count) {
            problem(path, request, QStringLiteral("the count went from %1 to %2").arg(count).arg(page.rowsCount()));
        }
        QVariantList const rows = page.rows();
        int const expected = qMax(0, qMin(m_setup.pageSize, count - from));
        if (rows.size() != expected)
            problem(path, request, QStringLiteral("%1 rows of %2, not %3").arg(rows.size()).arg(count).arg(expected));
        for (int i = 0; i < rows.size(); ++i) {
            TarnRoles const row(CMGlobal::rolesValuesToHash(listingRoles(), rows[i].toList()));
            ++m_rowCount;
            visitRow(path, QStringLiteral("row %1").arg(from + i), row, path == m_setup.root);
        }
    }
}

// Login forms of services not logged in yet, and messages, are dialogs to
// fill in, not listings: they are counted and left alone.
bool Crawler::isDialog(CMPath const& path, TarnRowsRoles const& page)
{
    bool dialog = false;
    if (page.hasRowsRedirect()) {
        for (CMPath const& prefix : m_setup.dialogPrefixes)
            dialog = dialog || page.rowsRedirect().startsWith(prefix);
    } else {
        QString const type = itemType(page.roles().id());
        dialog = type == QLatin1String("form") || type == QLatin1String("message");
    }
    if (dialog)
        m_dialogs << path.toEncoded();
    return dialog;
}

QStringList const& Crawler::listingRoles() const
{
    return m_setup.anyText.isEmpty() ? rowRoles() : rowRolesWithContext();
}

bool Crawler::wait(CMVoidReply const& reply, CMPath const& path, QString const& request)
{
    if (!TarnClient::wait(reply, m_setup.timeoutMs)) {
        problem(path, request, QStringLiteral("no answer within %1 ms").arg(m_setup.timeoutMs));
        return false;
    }
    if (reply.hasError()) {
        problem(path, request, describe(reply.error()));
        return false;
    }
    return true;
}

// A person answers a service's login form with their account; every other
// dialog is only looked at.
void Crawler::answerDialog(CMPath const& listing, CMPath const& dialog)
{
    auto reply = TarnClient::rows(dialog, 0, 49, dialogRoles());
    if (!wait(reply, dialog, QStringLiteral("rows 0-49")))
        return;
    QString const id = reply.value().roles().id();
    bool const form = id.endsWith(QLatin1String("/form/login"));
    bool const page = id.endsWith(QLatin1String("/message/oauth"));
    if (!form && !page && itemType(id) == QLatin1String("form") && !m_setup.anyText.isEmpty()) {
        send(listing, reply.value());
        return;
    }
    if (m_setup.user.isEmpty() || (!form && !page))
        return;
    QString const service = id.section(QLatin1Char('/'), 2, 2);
    if (m_logins.contains(service)) {
        problem(listing, QStringLiteral("rows 0-0"), QStringLiteral("the login dialog of %1 again after the login").arg(service));
        return;
    }
    if (form)
        logIn(listing, service, reply.value());
    else
        logInOnPage(listing, service, reply.value());
}

// Types the account into the form's text and password fields, leaves
// choices as they are, and presses submit; the service's home is then
// crawled from the path the module sends the client to.
void Crawler::logIn(CMPath const& listing, QString const& service, TarnRowsRoles const& form)
{
    CMPath submit;
    for (QVariant const& v : form.rows()) {
        TarnRoles const row(CMGlobal::rolesValuesToHash(dialogRoles(), v.toList()));
        if (row.id().endsWith(QLatin1String("/button/submit")))
            submit = row.path();
        if (!row.id().contains(QLatin1String("/field/")))
            continue;
        TarnEdit const edit(row.value(TarnRoles::Edit()).toHash());
        if (edit.type() == TarnEditType::Select)
            continue;
        QString const typed = edit.password() ? m_setup.password : m_setup.user;
        auto set = TarnClient::setData(row.path(), TarnRoles::Value(), TarnValue().setString_(typed).__variant());
        if (!wait(set, row.path(), QStringLiteral("set value")))
            return;
    }
    if (submit.isEmpty()) {
        problem(listing, QStringLiteral("login"), QStringLiteral("a login form of %1 without submit").arg(service));
        return;
    }
    auto pressed = TarnClient::setData(submit, TarnRoles::Activate(), true);
    if (!wait(pressed, submit, QStringLiteral("activate")))
        return;
    CMPath const home = TarnActionReply(pressed.value().toHash()).result().path();
    for (CMPath const& prefix : m_setup.dialogPrefixes) {
        if (home.isEmpty() || home.startsWith(prefix)) {
            problem(submit, QStringLiteral("activate"), QStringLiteral("the login of %1 led to '%2'").arg(service, home.toEncoded()));
            return;
        }
    }
    m_logins << service;
    // Where the form was met, the home is now; it is listed anew.
    m_seen.remove(home.toEncoded());
    enqueue(home);
}

// As a client with a browser does: activates the login's browser flow with
// the address of its own web server, opens the page it is handed in the
// browser, logs in there, and when the page sends the browser back, tells
// the module that the login has ended. The service is then listed anew
// where its login dialog was met.
void Crawler::logInOnPage(CMPath const& listing, QString const& service, TarnRowsRoles const& message)
{
    CMPath flow;
    for (QVariant const& v : message.rows()) {
        TarnRoles const row(CMGlobal::rolesValuesToHash(dialogRoles(), v.toList()));
        CMPath const browser = TarnValue(row.value(TarnRoles::Value()).toHash()).oauth2Info().browserAuthFlowPath();
        if (!browser.isEmpty())
            flow = browser;
    }
    if (flow.isEmpty()) {
        problem(listing, QStringLiteral("login"), QStringLiteral("a login message of %1 without a browser flow").arg(service));
        return;
    }
    auto activated = TarnClient::setData(flow, TarnRoles::Activate(), TarnValue().setString_(m_setup.returnAddress).__variant());
    if (!wait(activated, flow, QStringLiteral("activate")))
        return;
    QUrl const page(TarnOAuth2LoginData(TarnHash(activated.value().toHash())).url());
    Browser::Result const sent = Browser(m_setup.caCertificates).logIn(page, m_setup.user, m_setup.password);
    if (!sent.error.isEmpty() || sent.status != 302 || !sent.location.startsWith(m_setup.returnAddress)) {
        problem(listing, QStringLiteral("login page %1").arg(page.toString()),
                sent.error.isEmpty() ? QStringLiteral("answered %1, sending the browser to '%2'").arg(sent.status).arg(sent.location)
                                     : sent.error);
        return;
    }
    auto ended = TarnClient::setData(m_setup.oauthPath, TarnRoles::Value(), TarnValue().setString_(sent.location).__variant());
    if (!wait(ended, m_setup.oauthPath, QStringLiteral("set value")))
        return;
    m_logins << service;
    m_seen.remove(listing.toEncoded());
    enqueue(listing);
}

void Crawler::visitRow(CMPath const& listing, QString const& request, TarnRoles const& row, bool inRoot)
{
    QString const type = row.type().toString();
    CMPath const path = row.path();
    bool const placeholder = type == TarnRolesType::Text() && text(row.value(TarnRoles::Title())) == QLatin1String(" ");
    if (placeholder) {
        problem(listing, request, QStringLiteral("a placeholder where a row should be"));
        return;
    }
    bool const isPlace = type == TarnRolesType::Container() || type == TarnRolesType::Audio();
    if (isPlace && !m_setup.anyText.isEmpty())
        openContext(row);
    if (isPlace && (path.isEmpty() || path == m_setup.root)) {
        problem(listing, request, QStringLiteral("row %1 has no path of its own: '%2'").arg(describe(row), path.toEncoded()));
        return;
    }
    if (type == TarnRolesType::Container()) {
        enqueue(path);
        if (inRoot)
            enqueue(m_setup.servicePrefix + row.id().section(QLatin1Char('/'), 4));
    } else if (type == TarnRolesType::Audio()) {
        play(row);
    } else if (type != TarnRolesType::Action() && type != TarnRolesType::Text()) {
        // Actions (buttons, log-out entries) and texts are no places to go.
        problem(listing, request, QStringLiteral("row %1 has no type").arg(describe(row)));
    }
}

// A form that is no login, a search most often: its text fields get the
// text, and what the submit leads to is crawled too.
void Crawler::send(CMPath const& listing, TarnRowsRoles const& form)
{
    CMPath submit;
    for (QVariant const& v : form.rows()) {
        TarnRoles const row(CMGlobal::rolesValuesToHash(dialogRoles(), v.toList()));
        if (row.id().endsWith(QLatin1String("/button/submit")))
            submit = row.path();
        TarnEdit const edit(row.value(TarnRoles::Edit()).toHash());
        if (!row.id().contains(QLatin1String("/field/")) || edit.type() == TarnEditType::Select)
            continue;
        auto set = TarnClient::setData(row.path(), TarnRoles::Value(), TarnValue().setString_(m_setup.anyText).__variant());
        if (!wait(set, row.path(), QStringLiteral("set value")))
            return;
    }
    if (submit.isEmpty())
        return;
    auto pressed = TarnClient::setData(submit, TarnRoles::Activate(), true);
    if (!wait(pressed, submit, QStringLiteral("activate")))
        return;
    CMPath const result = TarnActionReply(pressed.value().toHash()).result().path();
    if (!result.isEmpty() && result != listing)
        enqueue(result);
}

// A row's context menu is read as a listing, and each of its actions
// pressed as a person would; the dialogs the presses open are not.
void Crawler::openContext(TarnRoles const& row)
{
    CMPath const context = TarnRoles(row.value(TarnRoles::Context()).toHash()).path();
    if (context.isEmpty() || m_seen.contains(context.toEncoded()))
        return;
    m_seen.insert(context.toEncoded());
    auto reply = TarnClient::rows(context, 0, 49, rowRoles());
    if (!wait(reply, context, QStringLiteral("rows 0-49")))
        return;
    for (QVariant const& v : reply.value().rows()) {
        TarnRoles const entry(CMGlobal::rolesValuesToHash(rowRoles(), v.toList()));
        if (entry.type().toString() == TarnRolesType::Action() && !entry.path().isEmpty())
            wait(TarnClient::setData(entry.path(), TarnRoles::Activate(), true), entry.path(), QStringLiteral("activate"));
        else if (entry.type().toString() == TarnRolesType::Container() && !entry.path().isEmpty())
            enqueue(entry.path());
    }
}

// A row's path is all a client keeps of it: asked again, it must give the
// same item.
void Crawler::fetchBack(TarnRoles const& row)
{
    QString const request = QStringLiteral("data id");
    auto reply = TarnClient::data(row.path(), {TarnRoles::Id()});
    if (!TarnClient::wait(reply, m_setup.timeoutMs)) {
        problem(row.path(), request, QStringLiteral("no answer within %1 ms").arg(m_setup.timeoutMs));
        return;
    }
    if (reply.hasError()) {
        problem(row.path(), request, describe(reply.error()));
        return;
    }
    QString const id = reply.value().value(0).toString();
    if (id != row.id())
        problem(row.path(), request, QStringLiteral("the item %1, not the row's %2").arg(id, row.id()));
}

void Crawler::play(TarnRoles const& row)
{
    TarnMetaData const meta = row.mediaData().metaData();
    // A program's URL hands out its tracks to the play logic; asking it
    // again would use them up. The player hands the row to the play logic.
    if (meta.prePlayPath().isEmpty() && !meta.playLogicPath().isEmpty())
        m_programs << row.id();
    else
        fetchBack(row);
    Play played{row.id(), row.path().toEncoded(), meta.serviceID(), QString(), QString()};
    CMReply<QVariant> const settled;
    auto const onState = QObject::connect(m_streamer, &SimulatedStreamer::stateChanged,
                                          [settled](TarnPlayLogicData const& data) {
                                              if (data.state() != TarnPlayLogicData::Preparing)
                                                  settled.setValue(data.state());
                                          });
    auto const onStep = QObject::connect(m_streamer, &SimulatedStreamer::step, [&played](QString const& step) {
        if (step.startsWith(QLatin1String("failed: ")))
            played.failure = step.mid(8);
    });
    m_streamer->play(row);
    bool const inTime = TarnClient::wait(settled, m_setup.timeoutMs);
    QObject::disconnect(onState);
    QObject::disconnect(onStep);

    if (!inTime) {
        problem(row.path(), QStringLiteral("play"),
                QStringLiteral("still preparing after %1 ms").arg(m_setup.timeoutMs));
    } else if (m_streamer->state() == TarnPlayLogicData::Playing) {
        played.uri = m_streamer->uri();
        if (!played.uri.startsWith(m_setup.mediaUrl + QLatin1Char('/')))
            problem(row.path(), QStringLiteral("play"), QStringLiteral("plays %1, no stream of the cloud").arg(played.uri));
    }
    m_streamer->stop(0);
    m_plays << played;
}
