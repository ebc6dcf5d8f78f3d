#include "sharedcloud.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QUrl>
#include <QUrlQuery>
#include <httplib.h>

namespace {

// The return address that the module signed into a login URL, from the
// token in its "return" parameter: URL-safe base64 of [address, signature].
QString returnAddressIn(QString const& loginUrl)
{
    QString const token = QUrlQuery(QUrl(loginUrl)).queryItemValue("return", QUrl::FullyDecoded);
    QByteArray const json = QByteArray::fromBase64(token.toLatin1(), QByteArray::Base64UrlEncoding);
    return QJsonDocument::fromJson(json).array().at(0).toString();
}

// An address as a browser reads it, whichever of its characters are
// percent-encoded.
std::string decoded(QString const& url)
{
    QUrl const address(url);
    QString text = address.toString(QUrl::RemoveQuery);
    for (auto const& item : QUrlQuery(address).queryItems(QUrl::FullyDecoded))
        text += QLatin1Char(' ') + item.first + QLatin1Char('=') + item.second;
    return text.toStdString();
}

QString unescapeHtml(QString text)
{
    return text.replace("&quot;", "\"")
        .replace("&#39;", "'")
        .replace("&lt;", "<")
        .replace("&gt;", ">")
        .replace("&amp;", "&");
}

// A browser, as far as a login page needs one: it gets pages, posts forms
// and tells where a redirect leads.
class Browser
{
public:
    struct Page
    {
        int status = 0;
        std::string body;
        QString location;
    };

    static Page get(QUrl const& url)
    {
        httplib::Client client(url.host().toStdString(), url.port());
        auto const answer = client.Get(url.toString(QUrl::RemoveScheme | QUrl::RemoveAuthority).toStdString());
        return pageOf(answer);
    }

    static Page post(QUrl const& url, httplib::Params const& form)
    {
        httplib::Client client(url.host().toStdString(), url.port());
        auto const answer = client.Post(url.toString(QUrl::RemoveScheme | QUrl::RemoveAuthority).toStdString(), form);
        return pageOf(answer);
    }

private:
    static Page pageOf(httplib::Result const& answer)
    {
        Page page;
        if (!answer)
            return page;
        page.status = answer->status;
        page.body = answer->body;
        page.location = QString::fromStdString(answer->get_header_value("Location"));
        return page;
    }
};

// A login form as a person fills it in: the e-mail and password inputs
// typed in, every other input as it stands.
bool fillForm(QString const& html, QString const& email, QString const& password, QString* action,
              httplib::Params* form)
{
    QRegularExpression const post("<form[^>]*method=\"post\"[^>]*action=\"([^\"]*)\"",
                                  QRegularExpression::CaseInsensitiveOption);
    QRegularExpressionMatch const tag = post.match(html);
    if (!tag.hasMatch())
        return false;
    *action = unescapeHtml(tag.captured(1));
    QRegularExpression const input("<input([^>]*)>");
    QRegularExpression const name("name=\"([^\"]*)\"");
    QRegularExpression const type("type=\"([^\"]*)\"");
    QRegularExpression const value("value=\"([^\"]*)\"");
    for (auto it = input.globalMatch(html); it.hasNext();) {
        QString const attributes = it.next().captured(1);
        QString const key = name.match(attributes).captured(1);
        QString const kind = type.match(attributes).captured(1);
        QString typed = unescapeHtml(value.match(attributes).captured(1));
        if (kind == "password")
            typed = password;
        else if (kind == "email" || kind == "text")
            typed = email;
        if (!key.isEmpty())
            form->emplace(key.toStdString(), typed.toStdString());
    }
    return true;
}

class CliOAuth : public SharedCloud
{
};

} // namespace

TEST_F(CliOAuth, theAppFlowPrintsThePageForTheAppWhichComesBackToTheAppAlone)
{
    HostRun const run =
        host({"--json", "--oauth-redirect", "tarnapp://oauth/back", "oauth", "/tidal", "--flow", "app"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 1) << run.out.toStdString();
    QString const url = out[0].value("url").toString();
    EXPECT_EQ(out[0].value("flow").toString(), "app");
    EXPECT_TRUE(url.startsWith(cloud->baseUrl() + "/web/tidal/authorize")) << url.toStdString();
    EXPECT_EQ(returnAddressIn(url), "tarnapp://oauth/back") << url.toStdString();
    EXPECT_FALSE(url.contains("servicePath"));
}

TEST_F(CliOAuth, theBrowserComesBackToTheHostWhichEndsTheLoginAndGoesWhereTheDialogSends)
{
    RunningHost running(QStringList{"--cloud", cloud->baseUrl(), "--secret", cloud->secret(), "--json", "--timeout",
                                    "20", "oauth", "/tidal"});
    QJsonObject const first = QJsonDocument::fromJson(running.readLine().toUtf8()).object();
    QString const url = first.value("url").toString();
    ASSERT_FALSE(url.isEmpty()) << "the page's URL comes first";
    EXPECT_EQ(first.keys(), QStringList{"url"});
    QString const back = returnAddressIn(url);
    EXPECT_TRUE(back.startsWith("http://127.0.0.1:")) << back.toStdString();
    EXPECT_TRUE(back.contains("servicePath=")) << back.toStdString();

    Browser::Page const page = Browser::get(QUrl(url));
    QString action;
    httplib::Params form;
    if (!fillForm(QString::fromStdString(page.body), "me@example.com", "secret", &action, &form))
        GTEST_SKIP() << "the cloud's login page has no form yet: " << page.body;
    Browser::Page const sent = Browser::post(QUrl(url).resolved(QUrl(action)), form);
    ASSERT_EQ(sent.status, 302) << sent.body;
    EXPECT_EQ(decoded(sent.location), decoded(back));
    EXPECT_EQ(Browser::get(QUrl(sent.location)).status, 200);

    HostRun const run = running.finish();
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 2) << run.out.toStdString();
    QJsonObject const ended = out[1];
    EXPECT_EQ(decoded(ended.value("returned").toString()), decoded(back));
    EXPECT_EQ(ended.value("closed").toArray().size(), 1) << "the login dialog";
    EXPECT_TRUE(ended.value("goto").toString().endsWith("/tidal")) << run.out.toStdString();
    EXPECT_FALSE(ended.value("listing").toObject().contains("dialog")) << "logged in, TIDAL shows its own listing";
    EXPECT_EQ(cloud->loggedInUser(kDevice, "tidal"), "me@example.com");
}

TEST_F(CliOAuth, aBrowserThatNeverComesBackEndsTheWaitWithATimeOut)
{
    HostRun const run = host({"--json", "--timeout", "1", "oauth", "/tidal"});
    EXPECT_EQ(run.exitCode, 1);
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 2) << run.out.toStdString();
    EXPECT_TRUE(out[0].contains("url"));
    QJsonObject const error = out[1].value("error").toObject();
    EXPECT_EQ(error.value("name").toString(), "timeout");
    QString const message = error.value("message").toString();
    EXPECT_TRUE(message.contains("browser")) << message.toStdString();
}

TEST_F(CliOAuth, aRowThatIsNoLoginIsRefused)
{
    HostRun const run = host({"--json", "shell"}, "ls /tidal\noauth 2\n");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.objects().value(1).value("error").toObject().value("name").toString(), "noLogin")
        << run.out.toStdString();
}

// The tree lists a login message as rows; a person sees a dialog with its
// login on the service's page.
TEST_F(CliOAuth, aLoginMessageIsShownAsADialog)
{
    HostRun const run = host({"--json", "ls", "/tidal"});
    QJsonObject const dialog = run.objects().value(0).value("dialog").toObject();
    EXPECT_EQ(dialog.value("kind").toString(), "message") << run.out.toStdString();
    QJsonArray const logins = dialog.value("logins").toArray();
    ASSERT_EQ(logins.size(), 1);
    EXPECT_EQ(logins[0].toObject().value("title").toString(), "Log in with TIDAL");
}
