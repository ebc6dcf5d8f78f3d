#include "cloudserver.h"
#include "device.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>

#include <httplib.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

// The return token as a device makes it, written here apart from the
// cloud's reading of it.
QString tokenOf(QString const& returnUrl, QString const& signature)
{
    QByteArray const pair = QJsonDocument(QJsonArray{returnUrl, signature}).toJson(QJsonDocument::Compact);
    return QString::fromLatin1(pair.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

QString signatureOf(QString const& returnUrl, QString const& secret)
{
    return QString::fromLatin1(
        QCryptographicHash::hash((secret + ':' + returnUrl).toUtf8(), QCryptographicHash::Md5).toHex());
}

QString returnToken(QString const& returnUrl, QString const& secret)
{
    return tokenOf(returnUrl, signatureOf(returnUrl, secret));
}

std::string encoded(std::string const& value)
{
    return QUrl::toPercentEncoding(QString::fromStdString(value)).toStdString();
}

class OAuthLogin : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
        ASSERT_TRUE(kitchen.authenticate());
        ASSERT_TRUE(hall.authenticate());
        browser = std::make_unique<httplib::Client>("127.0.0.1", cloud.port());
    }

    std::string base() const { return cloud.baseUrl().toStdString(); }

    // The login URL of the service's message, as the device's OAuth node
    // hands it to the browser: below the cloud's address, ":return:" filled.
    std::string loginPath(Device& device, std::string const& service, QString const& token)
    {
        Device::Reply const message = device.get("/" + service);
        std::string url = message.string("/buttons/0/url");
        EXPECT_EQ(url.compare(0, base().size(), base()), 0) << url;
        url = url.substr(base().size());
        size_t const placeholder = url.find(":return:");
        EXPECT_NE(placeholder, std::string::npos) << url;
        return placeholder == std::string::npos ? url : url.replace(placeholder, 8, token.toStdString());
    }

    // A browser: no token, no "Authorization", a form posted as browsers do.
    httplib::Result open(std::string const& path) { return browser->Get(path.c_str()); }
    httplib::Result post(std::string const& path, std::string const& user, std::string const& password)
    {
        return browser->Post(path.c_str(), "user=" + encoded(user) + "&password=" + encoded(password),
                            "application/x-www-form-urlencoded");
    }

    cloudsim::CloudServer cloud;
    Device kitchen{cloud, "AA:00:00:00:00:01"};
    Device hall{cloud, "AA:00:00:00:00:02"};
    QString const back = "http://127.0.0.1:9000/back?servicePath=oauth:airable";
    std::unique_ptr<httplib::Client> browser;
};

TEST_F(OAuthLogin, untilTheDeviceLogsInEveryPathOfTheServiceAnswersTheLoginMessage)
{
    for (char const* path : {"/tidal", "/tidal/albums/td-al1", "/id/tidal/track/td-al1t1", "/amazon",
                             "/amazon/stations/chill", "/amazon/streams/am-al1t1"}) {
        Device::Reply const r = kitchen.get(path);
        EXPECT_EQ(r.string("/id/1") + "/" + r.string("/id/2"), "message/oauth") << path;
        EXPECT_EQ(r.string("/buttons/0/id/2"), "oauth") << path;
        EXPECT_EQ(r.string("/buttons/1/id/2"), "cancel") << path;
    }
    std::string const url = kitchen.get("/tidal").string("/buttons/0/url");
    EXPECT_EQ(url.rfind(base() + "/web/tidal/authorize?session=", 0), 0u) << url;
    EXPECT_NE(url.find("&return=:return:"), std::string::npos) << url;
    EXPECT_EQ(kitchen.get("/tidal/albums/td-al2").string("/buttons/0/url"), url) << "one session per device";
    EXPECT_NE(hall.get("/tidal").string("/buttons/0/url"), url) << "another device, another session";
}

TEST_F(OAuthLogin, thePageIsAFormThatPostsBackToItsOwnUrl)
{
    std::string const path = loginPath(kitchen, "tidal", returnToken(back, cloud.secret()));
    auto const page = open(path);
    ASSERT_TRUE(page);
    EXPECT_EQ(page->status, 200);
    EXPECT_EQ(page->get_header_value("Content-Type").rfind("text/html", 0), 0u);
    EXPECT_NE(page->body.find("<title>Log in to TIDAL</title>"), std::string::npos);
    EXPECT_NE(page->body.find("method=\"post\""), std::string::npos);
    EXPECT_NE(page->body.find("name=\"user\""), std::string::npos);
    EXPECT_NE(page->body.find("name=\"password\" type=\"password\""), std::string::npos);
    QString action = QString::fromStdString(path).toHtmlEscaped();
    EXPECT_NE(page->body.find("action=\"" + action.toStdString() + "\""), std::string::npos) << page->body;
    EXPECT_TRUE(cloud.loggedInUser(kitchen.id(), "tidal").isEmpty()) << "opening the page logs nobody in";
}

TEST_F(OAuthLogin, aGoodLoginSendsTheBrowserBackAndTheDeviceOfTheSessionToTheHome)
{
    std::string const path = loginPath(kitchen, "tidal", returnToken(back, cloud.secret()));
    auto const done = post(path, "me@example.com", "secret");
    ASSERT_TRUE(done);
    EXPECT_EQ(done->status, 302);
    EXPECT_EQ(done->get_header_value("Location"), back.toStdString());
    EXPECT_EQ(cloud.loggedInUser(kitchen.id(), "tidal"), "me@example.com");

    Device::Reply const home = kitchen.get("/tidal");
    EXPECT_EQ(home.string("/id/1") + "/" + home.string("/id/2"), "listing/index");
    EXPECT_EQ(kitchen.get("/tidal/albums/td-al1").string("/id/1"), "album");
    EXPECT_EQ(hall.get("/tidal").string("/id/2"), "oauth") << "the other device has its own login";
    EXPECT_EQ(kitchen.get("/amazon").string("/id/2"), "oauth") << "and so has the other service";

    // The companion app's address is a return address as good as any.
    auto const app = post(loginPath(hall, "amazon", returnToken("tarnapp://oauth/done", cloud.secret())),
                          "Premium@Example.com", "secret");
    ASSERT_TRUE(app);
    EXPECT_EQ(app->get_header_value("Location"), "tarnapp://oauth/done");
    EXPECT_EQ(cloud.loggedInUser(hall.id(), "amazon"), "premium@example.com");

    EXPECT_EQ(kitchen.get("/tidal/logout").string("/id/2"), "true");
    EXPECT_EQ(kitchen.get("/tidal").string("/id/2"), "oauth");
}

TEST_F(OAuthLogin, aWrongPasswordShowsTheFormAgainWithTheError)
{
    std::string const path = loginPath(kitchen, "amazon", returnToken(back, cloud.secret()));
    auto const refused = post(path, "me@example.com", "Secret");
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->status, 200);
    EXPECT_TRUE(refused->get_header_value("Location").empty());
    EXPECT_NE(refused->body.find("Wrong e-mail or password"), std::string::npos);
    EXPECT_NE(refused->body.find("value=\"me@example.com\""), std::string::npos) << "what was typed stays";
    EXPECT_NE(refused->body.find("name=\"password\""), std::string::npos);
    EXPECT_TRUE(cloud.loggedInUser(kitchen.id(), "amazon").isEmpty());
    EXPECT_EQ(kitchen.get("/amazon").string("/id/2"), "oauth");
}

TEST_F(OAuthLogin, aLinkWithABrokenTokenOrSessionIsRefusedWith400AndItsReason)
{
    std::string const good = loginPath(kitchen, "tidal", returnToken(back, cloud.secret()));
    std::string const session = good.substr(0, good.find("&return="));
    struct Case
    {
        char const* name;
        std::string path;
        char const* reason;
    };
    QByteArray const notJson = QByteArray("[\"only one\"]").toBase64(QByteArray::Base64UrlEncoding);
    Case const cases[] = {
        {"signed with another secret", session + "&return=" + returnToken(back, "not-the-secret").toStdString(),
         "signature"},
        {"another address under the signature",
         session + "&return=" + tokenOf("http://elsewhere.example/", signatureOf(back, cloud.secret())).toStdString(),
         "signature"},
        {"no base64", session + "&return=" + encoded("ab+/cd"), "base64"},
        {"no pair", session + "&return=" + notJson.toStdString(), "pair"},
        {"no token", session, "no return token"},
        {"a session nobody was handed", "/web/tidal/authorize?session=0123&return="
                                            + returnToken(back, cloud.secret()).toStdString(), "session"},
        {"the session of another service", loginPath(kitchen, "amazon", returnToken(back, cloud.secret()))
                                               .replace(5, 6, "tidal"), "session"},
    };
    for (Case const& c : cases) {
        for (bool posted : {false, true}) {
            auto const r = posted ? post(c.path, "me@example.com", "secret") : open(c.path);
            ASSERT_TRUE(r) << c.name;
            EXPECT_EQ(r->status, 400) << c.name << (posted ? " (posted)" : "");
            EXPECT_NE(r->body.find(c.reason), std::string::npos) << c.name << ": " << r->body;
        }
    }
    EXPECT_TRUE(cloud.loggedInUser(kitchen.id(), "tidal").isEmpty());
    EXPECT_TRUE(cloud.loggedInUser(kitchen.id(), "amazon").isEmpty());
    EXPECT_EQ(open("/web/deezer/authorize")->status, 404) << "a service that takes its password in a form";
}

} // namespace
