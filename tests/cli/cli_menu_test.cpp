#include "sharedcloud.h"

#include <QJsonArray>
#include <QRegularExpression>

namespace {

QStringList titlesIn(QJsonArray const& entries)
{
    QStringList titles;
    for (auto const& e : entries)
        titles << e.toObject().value("title").toString();
    return titles;
}

// The first radio of the popular list offers favourites and a playlist.
QByteArray const kRadioMenu = "ls /airable/radios/popular 0 2\nmenu 0\n";

class CliMenu : public SharedCloud
{
};

} // namespace

TEST(CliMenuOfARow, listsTheRowsActionsAndAPressedActionShowsTheCloudsAnswerAsAMessage)
{
    HostRun const run = runHost({"--json", "shell"}, kRadioMenu + "set 0 activate true\n");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 3) << run.out.toStdString();

    QJsonObject const menu = dialogOf(out[1]);
    EXPECT_EQ(menu.value("kind").toString(), "menu");
    EXPECT_EQ(out[1].value("roles").toObject().value("title").toString(), "Actions");
    QJsonArray const actions = menu.value("buttons").toArray();
    ASSERT_FALSE(actions.isEmpty()) << run.out.toStdString();
    EXPECT_EQ(actions.first().toObject().value("title").toString(), "Add to favourites");
    EXPECT_TRUE(actions.first().toObject().value("path").toString().startsWith("airable:action:"));
    EXPECT_EQ(titlesIn(menu.value("lists").toArray()), QStringList{"Add to playlist"});

    QJsonObject const pressed = out[2];
    EXPECT_FALSE(pressed.value("goto").toString().isEmpty()) << run.out.toStdString();
    QJsonObject const answer = dialogOf(pressed.value("listing").toObject());
    EXPECT_EQ(answer.value("kind").toString(), "message") << "an action's answer reads as a message";
    EXPECT_FALSE(answer.value("text").toString().isEmpty()) << run.out.toStdString();
}

TEST(CliMenuOfARow, anEntryThatOpensAListIsListedWithLsAndTheTableNamesEachKind)
{
    HostRun const run = runHost({"--json", "shell"}, kRadioMenu + "ls 2\n");
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 3) << run.out.toStdString();
    QJsonObject const list = dialogOf(out[1]).value("lists").toArray().first().toObject();
    ASSERT_EQ(list.value("row").toInt(), 2) << "the catalogue's radio offers two actions before its playlist";
    EXPECT_EQ(out[2].value("path").toString(), list.value("path").toString());
    EXPECT_EQ(out[2].value("roles").toObject().value("title").toString(), "Add to playlist");

    HostRun const table = runHost({"shell"}, kRadioMenu);
    ASSERT_EQ(table.exitCode, 0) << table.err.toStdString();
    auto const line = [&table](QString const& pattern) {
        return table.out.contains(QRegularExpression(pattern, QRegularExpression::MultilineOption));
    };
    EXPECT_TRUE(line("^Actions \\(menu, \\d+ rows\\)$")) << table.out.toStdString();
    EXPECT_TRUE(line("^0  Add to favourites +action +airable:action:\\S+$")) << table.out.toStdString();
    EXPECT_TRUE(line("^2  Add to playlist +list +/airable/actions/playlist\\.insert\\S*$")) << table.out.toStdString();
}

TEST(CliMenuOfARow, aRowWithoutAMenuAndAMenuWithNothingListedAreNamedErrors)
{
    HostRun const run = runHost({"--json", "shell"}, "menu\nls / 0 1\nmenu 0\nmenu 7\n");
    EXPECT_EQ(run.exitCode, 1);
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 4) << run.out.toStdString();
    EXPECT_EQ(errorName(out[0]), "noListing");
    EXPECT_EQ(errorName(out[2]), "noMenu");
    EXPECT_EQ(errorName(out[3]), "noRow");
}

TEST_F(CliMenu, thePlayingTracksMenuComesFromTheCloudAndItsActionsAnswerInADialog)
{
    logIn("deezer", "me@example.com");
    HostRun const run = host({"--json", "shell"}, "ls /deezer\nplay 0 --tracks 1\nplayer menu\nset 0 activate true\n");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 4) << run.out.toStdString();

    EXPECT_TRUE(out[2].value("path").toString().startsWith("airable:playcontext:")) << run.out.toStdString();
    QJsonArray const actions = dialogOf(out[2]).value("buttons").toArray();
    EXPECT_EQ(titlesIn(actions), QStringList({"Like", "Remove rating", "Dislike"})) << run.out.toStdString();
    EXPECT_TRUE(out[3].value("goto").toString().startsWith("airable:dialog/")) << run.out.toStdString();
    EXPECT_EQ(dialogOf(out[3].value("listing").toObject()).value("kind").toString(), "message");
    EXPECT_FALSE(queriesTo("/deezer/tracks/dz-fl1/rate/positive").isEmpty()) << "the action reached the cloud";
}
