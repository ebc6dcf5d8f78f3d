#include "sharedcloud.h"

#include <QJsonArray>

namespace {

QString const kAll("/airable/radios/all"); // 230 radios in pages of 25

class CliPaging : public SharedCloud
{
protected:
    // Titles of rows FROM to TO of the long listing, read in one go.
    QStringList titles(int from, int to)
    {
        HostRun const run = host({"--json", "ls", kAll, QString::number(from), QString::number(to), "--roles", "title"});
        EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
        return titlesOf(run.objects().value(0));
    }
};

} // namespace

TEST_F(CliPaging, aRangeAcrossPagesIsReadFromRowZeroPageAfterPage)
{
    HostRun const run = host({"--json", "ls", kAll, "0", "59", "--roles", "title"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QJsonObject const listing = run.objects().value(0);
    EXPECT_EQ(listing.value("from").toInt(), 0);
    EXPECT_EQ(listing.value("to").toInt(), 59);
    EXPECT_EQ(listing.value("count").toInt(), 230);
    QStringList const rows = titlesOf(listing);
    ASSERT_EQ(rows.size(), 60);
    EXPECT_EQ(QSet<QString>(rows.begin(), rows.end()).size(), 60) << "no page twice";
    EXPECT_EQ(queriesTo(kAll), QStringList({"", "p=2", "p=3"}));
    EXPECT_FALSE(run.err.contains("WARN")) << run.err.toStdString();
}

TEST_F(CliPaging, aRangeInsideTheListingOpensItAtRowZeroFirst)
{
    QStringList const whole = titles(0, 59);
    cloud->clearLog();
    HostRun const run = host({"--json", "ls", kAll, "30", "54", "--roles", "title"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(titlesOf(run.objects().value(0)), whole.mid(30, 25));
    EXPECT_EQ(queriesTo(kAll), QStringList({"", "p=2", "p=3"}));
    EXPECT_FALSE(run.err.contains("WARN")) << run.err.toStdString();
}

TEST_F(CliPaging, nextGoesOnWhereTheRowsShownEnd)
{
    QStringList const whole = titles(0, 59);
    HostRun const run = host({"--json", "shell"}, "ls /airable/radios/all 10 --roles title\nnext\n");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 2);
    EXPECT_EQ(out[0].value("from").toInt(), 10);
    EXPECT_EQ(out[1].value("from").toInt(), 35);
    EXPECT_EQ(titlesOf(out[0]) + titlesOf(out[1]), whole.mid(10)) << "rows 10 to 59 without a gap";
}

TEST_F(CliPaging, aRangeEndsWithTheListingWithoutAskingBeyondIt)
{
    HostRun const tail = host({"--json", "ls", kAll, "225", "300"});
    ASSERT_EQ(tail.exitCode, 0) << tail.err.toStdString();
    EXPECT_EQ(tail.objects().value(0).value("rows").toArray().size(), 5);

    // The last row a request can name, and the page after it: nothing
    // overflows, nothing is asked past the end.
    cloud->clearLog();
    HostRun const edge = host({"--json", "shell"}, "ls / 5 2147483647 --roles title\nnext\nls / 2147483647\n");
    ASSERT_EQ(edge.exitCode, 0) << edge.err.toStdString();
    QList<QJsonObject> const out = edge.objects();
    ASSERT_EQ(out.size(), 3);
    EXPECT_EQ(titlesOf(out[0]).size(), out[0].value("count").toInt() - 5);
    EXPECT_EQ(out[1].value("from").toInt(), out[0].value("count").toInt());
    EXPECT_TRUE(out[1].value("rows").toArray().isEmpty());
    EXPECT_TRUE(out[2].value("rows").toArray().isEmpty());
    for (QString const& query : queriesTo("/"))
        EXPECT_TRUE(query.isEmpty()) << "a page past the end was asked: " << query.toStdString();
    EXPECT_FALSE(edge.err.contains("WARN")) << edge.err.toStdString();

    HostRun const beyond = host({"ls", "/", "2147483648"});
    EXPECT_EQ(beyond.exitCode, 2);
    EXPECT_TRUE(beyond.err.contains("FROM must be a row number")) << beyond.err.toStdString();
}

TEST_F(CliPaging, aNumberThatIsNoRowOfTheLastListingIsAnError)
{
    // The root has 8 rows, 0 to 7.
    HostRun const run = host({"--json", "shell"}, "ls / --roles path\n"
                                                  "get 8\n"
                                                  "get -1\n"
                                                  "cd 1099511627776\n"
                                                  "cd 99999999999999999999999\n"
                                                  "cd 4294967296\n"
                                                  "pwd\n"
                                                  "cd 7\n");
    EXPECT_EQ(run.exitCode, 1);
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 8) << run.out.toStdString();
    for (int i = 1; i <= 5; ++i)
        EXPECT_EQ(out[i].value("error").toObject().value("name").toString(), "noRow") << i;
    EXPECT_EQ(out[6].value("path").toString(), "airable:") << "no number became row 0";
    EXPECT_EQ(out[7].value("path").toString(), out[0].value("rows").toArray().at(7).toObject().value("path").toString());
}
