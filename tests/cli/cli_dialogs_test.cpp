#include "sharedcloud.h"
#include "testprograms.h"

#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>

namespace {

// The commands of the README's scripted login session, as written there.
QByteArray readmeLoginSession()
{
    QFile readme(QStringLiteral(TARN_README));
    if (!readme.open(QIODevice::ReadOnly))
        return QByteArray();
    QString const text = QString::fromUtf8(readme.readAll());
    QString const opening = QStringLiteral("<<'EOF'\n");
    int const section = text.indexOf(QStringLiteral("### Scripted sessions"));
    int const start = section < 0 ? -1 : text.indexOf(opening, section);
    int const end = start < 0 ? -1 : text.indexOf(QStringLiteral("\nEOF\n"), start);
    if (end < 0)
        return QByteArray();
    return text.mid(start + opening.size(), end - start - opening.size() + 1).toUtf8();
}

QByteArray loginWith(QByteArray const& password)
{
    return "ls /deezer\n"
           "set 0 value '\"me@example.com\"'\n"
           "set 1 value '\"" + password + "\"'\n"
           "set 3 activate true\n";
}

QStringList valuesOf(QJsonArray const& list, char const* key)
{
    QStringList values;
    for (auto const& item : list)
        values << item.toObject().value(key).toVariant().toString();
    return values;
}

QString errorMessage(QJsonObject const& object)
{
    return object.value("error").toObject().value("message").toString();
}

class CliDialogs : public SharedCloud
{
};

} // namespace

TEST(CliDialogsReadme, theScriptedLoginSessionRunsAsWrittenAndReachesTheDeezerHome)
{
    QByteArray const script = readmeLoginSession();
    ASSERT_FALSE(script.isEmpty()) << "no scripted session in " TARN_README;
    HostRun const run = runHost({"--json", "shell"}, script);
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 5) << run.out.toStdString();

    EXPECT_EQ(dialogOf(out[0]).value("kind").toString(), "form");
    QJsonObject const pressed = out[3];
    EXPECT_EQ(pressed.value("closed").toArray(), QJsonArray{out[0].value("path")}) << "the login form closes";
    EXPECT_FALSE(pressed.value("listing").toObject().contains("dialog")) << "the login went through";
    EXPECT_TRUE(titlesOf(out[4]).contains("Flow")) << run.out.toStdString();
}

TEST(CliDialogsLogin, aWrongPasswordAnswersAMessageWhoseFirstButtonLeadsBackToTheForm)
{
    HostRun const run = runHost({"--json", "shell"}, loginWith("not-the-password") + "set 1 activate true\n");
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 5) << run.out.toStdString();
    QJsonObject const answer = out[3].value("listing").toObject();
    if (dialogOf(answer).value("kind").toString() != QLatin1String("message"))
        GTEST_SKIP() << "the simulated cloud took the wrong password: it checks no passwords yet";

    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(out[3].value("goto").toString(), answer.value("path").toString());
    EXPECT_EQ(dialogOf(answer).value("text").toString(), "Wrong e-mail or password");
    QJsonArray const buttons = dialogOf(answer).value("buttons").toArray();
    ASSERT_EQ(buttons.size(), 2) << "back to the form, and cancel";
    EXPECT_EQ(buttons.first().toObject().value("row").toInt(), 1) << "the text is row 0";
    EXPECT_EQ(dialogOf(out[4].value("listing").toObject()).value("kind").toString(), "form");
}

TEST_F(CliDialogs, aRequiredFieldLeftEmptyIsNamedAndNothingIsSent)
{
    HostRun const run = host({"--json", "shell"}, "ls /deezer\nset 1 value '\"secret\"'\nset 3 activate true\n");
    EXPECT_EQ(run.exitCode, 1);
    QString const message = errorMessage(run.objects().value(2));
    EXPECT_TRUE(message.startsWith("Input field validation error!")) << message.toStdString();
    EXPECT_TRUE(message.contains("\"E-mail\" needs a text")) << message.toStdString();
    EXPECT_FALSE(message.contains("Password")) << "a password may be any text";
    EXPECT_TRUE(queriesTo("/deezer/login").isEmpty());
}

TEST(CliDialogsSelect, optionsAreListedWithTheFieldAndOneIsChosenByItsValue)
{
    HostRun const run = runHost({"--json", "shell"}, "ls /deezer\n"
                                                     "ls 2\n"
                                                     "set 2 value '\"2\"'\n"
                                                     "set 2 value '\"9\"'\n"
                                                     "ls 2\n"
                                                     "get 3 --roles title\n");
    EXPECT_EQ(run.exitCode, 1) << "the option that isn't one";
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 6) << run.out.toStdString();

    QJsonArray const offered = dialogOf(out[0]).value("fields").toArray().at(2).toObject().value("options").toArray();
    EXPECT_EQ(valuesOf(offered, "title"), QStringList({"Standard", "High Quality"})) << "shown with the form";

    QJsonObject const field = out[1].value("field").toObject();
    EXPECT_EQ(field.value("title").toString(), "Streaming quality");
    EXPECT_EQ(field.value("value").toString(), "1");
    EXPECT_EQ(valuesOf(dialogOf(out[1]).value("options").toArray(), "value"), QStringList({"1", "2"}));

    QString const refused = errorMessage(out[3]);
    EXPECT_EQ(out[3].value("error").toObject().value("name").toString(), "invalidArgument");
    EXPECT_TRUE(refused.contains("\"Streaming quality\"") && refused.contains("\"9\"")) << refused.toStdString();
    EXPECT_EQ(out[4].value("field").toObject().value("value").toString(), "2") << "the chosen one, not the refused";
    EXPECT_EQ(out[5].value("roles").toObject().value("title").toString(), "Log in")
        << "listing the options leaves the form's row numbers as they were";
}

TEST(CliDialogsTable, aFormShowsKindsRulesAndOptionsAndHidesThePassword)
{
    HostRun const run = runHost({"shell"}, "ls /deezer\nset 1 value '\"hunter22\"'\nls airable:form1\n");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QString const table = run.out.mid(run.out.lastIndexOf("Log in to Deezer (form, 5 rows)"));
    auto const row = [&table](QString const& pattern) {
        return table.contains(QRegularExpression(pattern, QRegularExpression::MultilineOption));
    };
    EXPECT_TRUE(row("^0  E-mail +text, required +airable:form1:username$")) << table.toStdString();
    EXPECT_TRUE(row("^1  Password +password +\\*{8} +airable:form1:password$")) << table.toStdString();
    EXPECT_TRUE(row("^2  Streaming quality +select: 1 = Standard, 2 = High Quality +1 \\(Standard\\) +"
                    "airable:form1:quality$"))
        << table.toStdString();
    EXPECT_TRUE(row("^3  Log in +button +airable:form1:submit$")) << table.toStdString();
    EXPECT_TRUE(row("^4  Create account +link +https://signup\\.example/deezer *$")) << table.toStdString();
    EXPECT_FALSE(run.out.contains("hunter22"));
}

TEST(CliDialogsMessage, aMessageShowsItsTextOnceThenItsButtonsAndItsCancelClosesIt)
{
    HostRun const run = runHost({"--json", "shell"}, "ls /messages/paused\nset 2 activate true\n");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 2) << run.out.toStdString();
    QJsonObject const dialog = dialogOf(out[0]);
    EXPECT_EQ(dialog.value("kind").toString(), "message");
    EXPECT_EQ(dialog.value("text").toString(), "You have been listening for a while. Continue?");
    EXPECT_EQ(valuesOf(dialog.value("buttons").toArray(), "title"), QStringList({"Continue", "Stop"}));
    EXPECT_EQ(valuesOf(dialog.value("buttons").toArray(), "row"), QStringList({"1", "2"}));
    EXPECT_EQ(out[1].value("closed").toArray(), QJsonArray{out[0].value("path")});
    EXPECT_FALSE(out[1].contains("goto"));

    HostRun const table = runHost({"ls", "/messages/paused"});
    EXPECT_EQ(table.out.count("You have been listening for a while. Continue?"), 1) << table.out.toStdString();
    EXPECT_TRUE(table.out.contains(QRegularExpression("^2  Stop +button +airable:message1:1$",
                                                      QRegularExpression::MultilineOption)))
        << table.out.toStdString();
}
