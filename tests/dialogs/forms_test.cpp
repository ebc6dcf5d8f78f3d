#include "dialogs_fixture.h"

#include "cmroot.h"
#include "tarnedit.h"

class Forms : public Dialogs
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/deezer": {"id": ["deezer", "form", "login"], "title": "Log in to Deezer", "signup": "https://signup.example/deezer",
    "fields": [
      {"id": ["deezer", "field", "username"], "title": "E-mail:", "type": "text", "required": true, "value": ""},
      {"id": ["deezer", "field", "password"], "title": "Password:", "type": "password", "required": true, "value": ""},
      {"id": ["deezer", "field", "quality"], "title": "Quality:", "type": "select", "value": "",
       "options": {"1": "Standard", "2": "High"}},
      {"id": ["deezer", "field", "client"], "type": "hidden", "value": "tarn"}],
    "buttons": [
      {"id": ["deezer", "button", "cancel"], "title": "Cancel", "url": "{base}/"},
      {"id": ["deezer", "button", "submit"], "title": "Log in", "url": "{base}/deezer/login?old=1"}]},
  "/deezer/login": {"id": ["deezer", "listing", "home"], "title": "Deezer", "url": "{base}/deezer/home",
    "content": {"entries": []}},
  "/deezer/deep": "/deezer",
  "/tidal": {"id": ["tidal", "form", "login"], "title": "Log in to TIDAL", "description": "Your TIDAL account",
    "fields": [
      {"id": ["tidal", "field", "region"], "title": "Region:", "type": "select", "value": "eu"},
      {"id": ["tidal", "field", "quality"], "title": "Quality:", "type": "select", "value": "lossless",
       "options": {"low": "Low", "high": "High"}}],
    "buttons": [{"id": ["tidal", "button", "submit"], "title": "Log in", "url": "{base}/tidal/login"}]},
  "/tidal/login": {"id": ["tidal", "listing", "home"], "title": "TIDAL", "url": "{base}/tidal/home",
    "content": {"entries": []}},
  "/airable/feedback": {"id": ["airable", "form", "login"], "title": "Feedback",
    "buttons": [{"id": ["airable", "button", "submit"], "title": "Send", "url": "{base}/airable/sent"}]},
  "/qobuz/search": {"id": ["qobuz", "form", "search"], "title": "Search", "signup": "https://signup.example/qobuz",
    "fields": [{"id": ["qobuz", "field", "q"], "title": "Search for", "type": "text", "required": true, "value": ""}],
    "buttons": [{"id": ["qobuz", "button", "submit"], "title": "Search", "url": "{base}/qobuz/search/results"}]}
})";
    }

    CMPath form(int id) const { return worker->addPrefix(TarnAirablePrefixForm() + QString::number(id)); }
    CMPath field(int id, QString const& name) const { return form(id) + (QLatin1Char(':') + name); }
};

TEST_F(Forms, loginFormIsADialogOfItsFieldsButtonsAndSignUp)
{
    CMPath const login = open(QStringLiteral("/deezer"));
    ASSERT_EQ(login, form(1));
    TarnRowsRoles const rows = listing(login);
    ASSERT_EQ(rows.rowsCount(), 5) << "three fields, one button, the sign-up; no hidden field, no cancel";
    EXPECT_EQ(rows.roles().value(TarnRoles::ContainerType()).toInt(), TarnDialogContainerType::Dialog);
    EXPECT_EQ(text(row(rows, 0).title()), "E-mail") << "a text field drops its colon";
    EXPECT_EQ(text(row(rows, 1).title()), "Password");
    EXPECT_TRUE(TarnEdit(row(rows, 1).value(TarnRoles::Edit()).toHash()).password());
    EXPECT_EQ(text(row(rows, 2).title()), "Quality:") << "a select keeps it";
    EXPECT_EQ(TarnValue(row(rows, 2).value(TarnRoles::Value()).toHash()).string_(), QStringLiteral("1"))
        << "a select without a value shows its first option";
    EXPECT_EQ(row(rows, 3).path(), field(1, QStringLiteral("submit")));

    TarnRoles const signUp = row(rows, 4);
    EXPECT_EQ(text(signUp.title()), "Create account");
    EXPECT_EQ(signUp.value(TarnRoles::Type()).toInt(), TarnDialogRowType::Link);
    EXPECT_EQ(TarnResource(signUp.mediaData().resources().value(0).toHash()).uri(),
              QStringLiteral("https://signup.example/deezer"));
    EXPECT_EQ(TarnValue::fromVariant(CMRoot()->getValue(TarnAirableDeezerSignUpLinkPath())).string_(),
              QStringLiteral("https://signup.example/deezer"));

    TarnRowsRoles const options = listing(field(1, QStringLiteral("quality:edit")));
    ASSERT_EQ(options.rowsCount(), 2);
    EXPECT_EQ(text(row(options, 1).title()), "High");
    EXPECT_EQ(row(options, 1).value(TarnRoles::Type()).toInt(), TarnDialogRowType::Option);
    EXPECT_EQ(TarnValue(row(options, 1).value(TarnRoles::Value()).toHash()).string_(), QStringLiteral("2"));
}

TEST_F(Forms, submitSendsHiddenThenVisibleFieldsAndClosesTheLogin)
{
    CMPath const login = open(QStringLiteral("/deezer"));
    ASSERT_FALSE(type(field(1, QStringLiteral("username")), QStringLiteral("me@example.com")).hasError());
    ASSERT_FALSE(type(field(1, QStringLiteral("password")), QStringLiteral("a+b c")).hasError());
    ASSERT_FALSE(type(field(1, QStringLiteral("quality")), QStringLiteral("2")).hasError());
    EXPECT_TRUE(type(field(1, QStringLiteral("quality")), QStringLiteral("9")).hasError()) << "not an option";

    cloud->clearLog();
    auto const reply = press(field(1, QStringLiteral("submit")));
    ASSERT_FALSE(reply.hasError()) << reply.error().messageText().toStdString();
    TarnActionReply const answer(reply.value().toHash());
    EXPECT_EQ(answer.result().path(), at(QStringLiteral("/deezer/home")));
    ASSERT_EQ(answer.events().size(), 1);
    EXPECT_EQ(answer.events().first().path(), login);

    ASSERT_EQ(paths().size(), 1);
    QString const sent = paths().first();
    EXPECT_TRUE(sent.startsWith(QStringLiteral("/deezer/login?client=tarn&username=me"))) << sent.toStdString();
    EXPECT_TRUE(sent.contains(QStringLiteral("&password=a%2Bb")) && sent.endsWith(QStringLiteral("&quality=2")))
        << sent.toStdString();
    EXPECT_FALSE(sent.contains(QStringLiteral("old="))) << "a submit replaces the button's own query";
}

// The select's options are rows to choose from, not a rule: a select
// without options, or holding a value the cloud gave that is none of them,
// is sent as it stands, and the form's text is no role of its own.
TEST_F(Forms, selectsWithoutOptionsOrWithAValueOutsideThemAreSent)
{
    CMPath const login = open(QStringLiteral("/tidal"));
    TarnRowsRoles const rows = listing(login);
    EXPECT_FALSE(rows.roles().__contains(TarnRoles::Description()));
    ASSERT_EQ(rows.rowsCount(), 3);
    EXPECT_FALSE(TarnEdit(row(rows, 0).value(TarnRoles::Edit()).toHash()).hasEnumValues());
    EXPECT_EQ(listing(field(1, QStringLiteral("region:edit"))).rowsCount(), 0);

    EXPECT_TRUE(type(field(1, QStringLiteral("region")), QStringLiteral("us")).hasError())
        << "a person can only choose among the rows";

    cloud->clearLog();
    auto const reply = press(field(1, QStringLiteral("submit")));
    ASSERT_FALSE(reply.hasError()) << reply.error().messageText().toStdString();
    ASSERT_EQ(paths().size(), 1);
    EXPECT_EQ(paths().first(), QStringLiteral("/tidal/login?region=eu&quality=lossless"));
}

TEST_F(Forms, requiredFieldLeftEmptyStopsTheSubmit)
{
    open(QStringLiteral("/deezer"));
    LogCapture log;
    cloud->clearLog();
    auto const reply = press(field(1, QStringLiteral("submit")));
    EXPECT_EQ(reply.error().messageText(), QStringLiteral("Input field validation error!"));
    EXPECT_TRUE(log.contains(QStringLiteral("Field value validation error")));
    EXPECT_TRUE(paths().isEmpty());
    EXPECT_EQ(press(field(7, QStringLiteral("submit"))).error().messageText(),
              QStringLiteral("Internal airable error: wrong form index!"));
}

TEST_F(Forms, loginMetBelowAServiceIsShownFromTheServiceRoot)
{
    EXPECT_EQ(open(QStringLiteral("/deezer/deep")), at(QStringLiteral("/deezer")));
    EXPECT_EQ(open(QStringLiteral("/deezer")), form(2)) << "the first pass left its form in the cache";
    EXPECT_EQ(open(QStringLiteral("/airable/feedback")), form(3)) << "the cloud's own forms never move";
}

TEST_F(Forms, searchIsBrowsedWithItsQuotedQueryWithoutACloudCall)
{
    CMRootWorker::instance()->putValue(TarnAirableDeezerSignUpLinkPath(), TarnValue().setString_(QString()));
    CMPath const search = open(QStringLiteral("/qobuz/search"));
    TarnRowsRoles const rows = listing(search);
    EXPECT_EQ(text(row(rows, rows.rowsCount() - 1).title()), "FREE TRIAL");
    EXPECT_TRUE(TarnValue::fromVariant(CMRoot()->getValue(TarnAirableDeezerSignUpLinkPath())).string_().isEmpty())
        << "only the one service publishes its link";

    cloud->clearLog();
    auto empty = press(field(1, QStringLiteral("submit")));
    ASSERT_FALSE(empty.hasError()) << "an empty query is quoted, so it has a length";
    EXPECT_EQ(TarnActionReply(empty.value().toHash()).result().path(),
              worker->addPrefix(cloud->baseUrl() + QStringLiteral("/qobuz/search/results?q=%22%22")));

    type(field(1, QStringLiteral("q")), QStringLiteral("jazz+blues"));
    auto typed = press(field(1, QStringLiteral("submit")));
    EXPECT_EQ(TarnActionReply(typed.value().toHash()).result().path(),
              worker->addPrefix(cloud->baseUrl() + QStringLiteral("/qobuz/search/results?q=%22jazz%2Bblues%22")));
    EXPECT_TRUE(paths().isEmpty());

    listing(TarnActionReply(typed.value().toHash()).result().path());
    EXPECT_EQ(paths(), QStringList{QStringLiteral("/qobuz/search/results?q=%22jazz%2Bblues%22")});
}

TEST_F(Forms, anUnwatchedDialogGivesItsIdBackAndTheHundredAndFirstPushesOutTheOldest)
{
    {
        CMRowsWatch watch(open(QStringLiteral("/deezer")));
        ASSERT_TRUE(watch.isValid());
    }
    // The worker hears of the removed watch before its next request.
    EXPECT_EQ(open(QStringLiteral("/airable/feedback")), form(1));

    for (int i = 2; i <= 101; ++i)
        ASSERT_EQ(open(QStringLiteral("/airable/feedback")), form(i));
    EXPECT_EQ(press(field(1, QStringLiteral("submit"))).error().messageText(),
              QStringLiteral("Internal airable error: wrong form index!"));
    EXPECT_FALSE(press(field(101, QStringLiteral("submit"))).error().messageText().contains(QStringLiteral("index")));
}
