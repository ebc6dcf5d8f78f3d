#include "dialogs_fixture.h"

#include "airableoauth.h"
#include "cmroot.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>

class OAuth : public Dialogs
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/tidal": {"id": ["tidal", "message", "oauth"], "title": "Log in to TIDAL",
    "buttons": [{"id": ["tidal", "button", "oauth"], "title": "Log in",
                 "url": "https://login.example/tidal?to=:return:&again=:return:"}]},
  "/amazon": {"id": ["amazon", "message", "oauth"], "title": "Log in to Amazon Music",
    "buttons": [{"id": ["amazon", "button", "oauth"], "title": "Log in", "url": "https://login.example/amazon?to=:return:"}]}
})";
    }

    void SetUp() override
    {
        Dialogs::SetUp();
        CMRootWorker::instance()->putValue(TarnOAuth2AppRedirectUriPath(),
                                           TarnValue().setString_(QStringLiteral("tarnapp://oauth/done")));
    }

    TarnOAuth2Info loginOf(CMPath const& message)
    {
        TarnRowsRoles const rows = listing(message);
        return TarnValue(row(rows, 1).value(TarnRoles::Value()).toHash()).oauth2Info();
    }

    // The login URL a flow hands out, and the return address inside it.
    QString loginUrl(CMPath const& flow, QString const& returnAddress = QString())
    {
        auto const reply = set(flow, TarnValue().setString_(returnAddress).__variant(), TarnRoles::Activate());
        EXPECT_FALSE(reply.hasError()) << reply.error().messageText().toStdString();
        return TarnOAuth2LoginData(TarnHash(reply.value().toHash())).url();
    }

    static QJsonArray tokenPair(QString const& loginUrl)
    {
        QString const token = QUrlQuery(QUrl(loginUrl)).queryItemValue(QStringLiteral("to"));
        EXPECT_FALSE(token.contains(QRegExp(QStringLiteral("[+/=]"))));
        return QJsonDocument::fromJson(QByteArray::fromBase64(token.toLatin1(), QByteArray::Base64UrlEncoding)).array();
    }
};

TEST_F(OAuth, browserFlowSignsItsReturnAddressAndTheEndClosesTheDialogTowardsTheService)
{
    CMPath const message = open(QStringLiteral("/tidal"));
    QString const url = loginUrl(loginOf(message).browserAuthFlowPath(), QStringLiteral("http://127.0.0.1:9000/back"));
    EXPECT_FALSE(url.contains(QStringLiteral(":return:"))) << "every placeholder is replaced";

    QJsonArray const pair = tokenPair(url);
    ASSERT_EQ(pair.size(), 2);
    QString const returnUrl = pair.at(0).toString();
    EXPECT_TRUE(returnUrl.startsWith(QStringLiteral("http://127.0.0.1:9000/back?servicePath="))) << returnUrl.toStdString();
    EXPECT_EQ(pair.at(1).toString(),
              QString::fromLatin1(QCryptographicHash::hash((cloud->secret() + QLatin1Char(':') + returnUrl).toUtf8(),
                                                           QCryptographicHash::Md5).toHex()));

    CMRowsWatch watch(message);
    QStringList changes;
    QObject::connect(&watch, &CMRowsWatch::changed, [&changes](QString const& type, int, int) { changes << type; });
    ASSERT_FALSE(set(TarnAirableOAuthPath(), TarnValue().setString_(QStringLiteral("done")).__variant()).hasError());
    EXPECT_TRUE(waitFor([&] { return changes.contains(CMSubscribe::RowsChangeClose()); }));
    EXPECT_EQ(listing(message).rowsRedirect(), at(QStringLiteral("/tidal"))) << "on to where the login was asked";
}

TEST_F(OAuth, appFlowReturnsToTheAppAndTheLastLoginMessageIsTheOneClosed)
{
    CMPath const first = open(QStringLiteral("/tidal"));
    CMPath const second = open(QStringLiteral("/amazon"));
    QString const returnUrl = tokenPair(loginUrl(loginOf(second).appAuthFlowPath())).at(0).toString();
    EXPECT_EQ(returnUrl, QStringLiteral("tarnapp://oauth/done"));

    set(TarnAirableOAuthPath(), QVariant());
    EXPECT_EQ(listing(second).rowsRedirect(), at(QStringLiteral("/amazon")));
    EXPECT_FALSE(listing(first).hasRowsRedirect()) << "the first login's dialog was replaced as the one waited for";

    auto const permission = TarnClient::data(TarnAirableOAuthPath(), {TarnRoles::Permission(), TarnRoles::Title()});
    ASSERT_TRUE(TarnClient::wait(permission, kPatienceMs));
    EXPECT_EQ(permission.value().value(0), QVariant(TarnPermission::Default_()));
    EXPECT_FALSE(permission.value().value(1).isValid());

    CMPath odd = TarnAirableOAuthPath();
    odd.addParam(QStringLiteral("oauthType"), QStringLiteral("fax"));
    EXPECT_EQ(set(odd, QVariant(), TarnRoles::Activate()).error().messageText(), QStringLiteral("Unsupported oauth flow"));
    EXPECT_EQ(set(TarnAirableOAuthPath(), QVariant(), TarnRoles::Activate()).error().messageText(),
              QStringLiteral("Empty oauthType"));
    EXPECT_EQ(set(TarnAirableOAuthPath(), QVariant(), TarnRoles::Title()).error().name(), QStringLiteral("Error"));
}

TEST(OAuthToken, isAFixedUrlSafeTextForAFixedAddressAndSecret)
{
    QByteArray const token = AirableOAuth::returnToken("http://h/?a=1", QStringLiteral("s"));
    EXPECT_EQ(token, AirableOAuth::returnToken("http://h/?a=1", QStringLiteral("s")));
    EXPECT_NE(token, AirableOAuth::returnToken("http://h/?a=1", QStringLiteral("t")));
    EXPECT_FALSE(token.contains('+') || token.contains('/') || token.contains('='));
    QByteArray const digest = QCryptographicHash::hash("s:http://h/?a=1", QCryptographicHash::Md5).toHex();
    EXPECT_EQ(QByteArray::fromBase64(token, QByteArray::Base64UrlEncoding), "[\"http://h/?a=1\",\"" + digest + "\"]");
}
