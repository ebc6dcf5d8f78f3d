#include "dialogs_fixture.h"

class Messages : public Dialogs
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/confirm": {"id": ["qobuz", "message", "confirm"], "title": "Confirm", "description": "Really?",
    "buttons": [
      {"id": ["qobuz", "button", "ok"], "title": "OK", "url": "{base}/qobuz/done"},
      {"id": ["qobuz", "button", "nowhere"], "title": "Stay", "url": "?x=1"},
      {"id": ["qobuz", "button", "cancel"], "title": "Cancel", "url": "{base}/qobuz/cancelled"}]},
  "/amazon/welcome": {"id": ["amazon", "message", "welcome"], "title": "Welcome",
    "buttons": [
      {"id": ["amazon", "button", "signup"], "title": "Sign up", "url": "https://signup.example/amazon"},
      {"id": ["amazon", "button", "ok"], "title": "OK", "url": "{base}/amazon"}]},
  "/tidal": {"id": ["tidal", "message", "oauth"], "title": "Log in to TIDAL", "description": "On TIDAL's page",
    "buttons": [
      {"id": ["tidal", "button", "oauth"], "title": "Log in", "url": "https://login.example/tidal?r=:return:"},
      {"id": ["tidal", "button", "cancel"], "title": "Cancel"}]}
})";
    }

    CMPath message(int id) const { return worker->addPrefix(TarnAirablePrefixMessage() + QString::number(id)); }
    CMPath button(int id, int index) const { return message(id) + QStringLiteral(":%1").arg(index); }
};

TEST_F(Messages, messageShowsItsTextThenItsButtonsAndPressesFollowTheirLinks)
{
    CMPath const confirm = open(QStringLiteral("/confirm"));
    ASSERT_EQ(confirm, message(1));
    TarnRowsRoles const rows = listing(confirm);
    ASSERT_EQ(rows.rowsCount(), 4);
    EXPECT_EQ(text(row(rows, 0).title()), "Really?");
    EXPECT_EQ(rows.roles().value(TarnRoles::ContainerType()).toInt(), TarnDialogContainerType::Dialog);
    EXPECT_EQ(row(rows, 3).path(), button(1, 2)) << "cancel is a button like the others";

    CMRowsWatch watch(confirm);
    QStringList changes;
    QObject::connect(&watch, &CMRowsWatch::changed, [&changes](QString const& type, int, int) { changes << type; });
    auto const ok = press(button(1, 0));
    EXPECT_EQ(TarnActionReply(ok.value().toHash()).result().path(), at(QStringLiteral("/qobuz/done")));
    EXPECT_TRUE(waitFor([&] { return changes.contains(CMSubscribe::RowsChangeClose()); }));

    for (int index : {1, 2, 9}) {
        // A link without a path, a cancel and a button past the last only
        // close the dialog.
        TarnActionReply const closed(press(button(1, index)).value().toHash());
        EXPECT_FALSE(closed.__contains(QStringLiteral("result"))) << index;
        ASSERT_EQ(closed.events().size(), 1) << index;
        EXPECT_EQ(closed.events().first().rowsType(), TarnEventRowsType::Close);
    }
    EXPECT_EQ(press(button(5, 0)).error().messageText(), QStringLiteral("Internal airable error: wrong index!"));
}

TEST_F(Messages, signUpAndLoginOnTheServicePageArePlainRowsTheirNodesStillAnswer)
{
    TarnRowsRoles const welcome = listing(open(QStringLiteral("/amazon/welcome")));
    ASSERT_EQ(welcome.rowsCount(), 3);
    TarnRoles const signUp = row(welcome, 1);
    EXPECT_EQ(signUp.value(TarnRoles::Type()).toInt(), TarnDialogRowType::Link);
    EXPECT_EQ(TarnResource(signUp.mediaData().resources().value(0).toHash()).uri(),
              QStringLiteral("https://signup.example/amazon"));
    EXPECT_EQ(row(welcome, 2).path(), button(1, 1));

    CMPath const login = open(QStringLiteral("/tidal"));
    TarnRowsRoles const rows = listing(login);
    EXPECT_EQ(rows.roles().value(TarnRoles::ContainerType()).toInt(), TarnDialogContainerType::List);
    ASSERT_EQ(rows.rowsCount(), 3);
    TarnRoles const oauth = row(rows, 1);
    EXPECT_EQ(oauth.value(TarnRoles::Type()).toInt(), TarnDialogRowType::OAuth2Login);
    TarnOAuth2Info const info = TarnValue(oauth.value(TarnRoles::Value()).toHash()).oauth2Info();
    EXPECT_FALSE(info.loggedIn());
    for (CMPath const& flow : {info.appAuthFlowPath(), info.browserAuthFlowPath()})
        EXPECT_EQ(flow.param(QStringLiteral("url")), QStringLiteral("https://login.example/tidal?r=:return:"));
    EXPECT_EQ(info.appAuthFlowPath().param(QStringLiteral("oauthType")), QStringLiteral("app"));
    EXPECT_EQ(info.browserAuthFlowPath().param(QStringLiteral("oauthType")), QStringLiteral("browser"));

    auto const data = TarnClient::data(button(2, 0), {TarnRoles::Title()});
    ASSERT_TRUE(TarnClient::wait(data, kPatienceMs));
    EXPECT_EQ(text(data.value().value(0)), "Log in") << "the login's node exists beside its row";
}
