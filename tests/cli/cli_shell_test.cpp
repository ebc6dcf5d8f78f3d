#include "hostprocess.h"

#include <QJsonArray>
#include <gtest/gtest.h>

namespace {
QString pathOfRow(QJsonObject const& listing, int index)
{
    int const from = listing.value("from").toInt();
    return listing.value("rows").toArray().at(index - from).toObject().value("path").toString();
}
} // namespace

TEST(CliShell, scriptedSessionPagesAndNavigatesByRowNumbers)
{
    HostRun const run = runHost({"--json", "shell"}, "# a comment, then a blank line\n"
                                                     "\n"
                                                     "ls /airable/radios/all\n"
                                                     "next\n"
                                                     "cd 27\n"
                                                     "pwd\n"
                                                     "back\n"
                                                     "quit\n"
                                                     "ls\n");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 5) << run.out.toStdString();

    EXPECT_EQ(out[0].value("from").toInt(), 0);
    EXPECT_EQ(out[1].value("from").toInt(), 25);
    EXPECT_EQ(out[1].value("rows").toArray().size(), 25);
    EXPECT_NE(titlesOf(out[0]), titlesOf(out[1]));
    EXPECT_EQ(out[2].value("path").toString(), pathOfRow(out[1], 27));
    EXPECT_EQ(out[3].value("path").toString(), pathOfRow(out[1], 27));
    EXPECT_EQ(out[4].value("path").toString(), "airable:");
}

TEST(CliShell, rowNumbersOfTheRootLeadIntoAService)
{
    HostRun const run = runHost({"--json", "shell"}, "ls\ncd 0\nls\n");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 3);
    EXPECT_EQ(out[1].value("path").toString(), pathOfRow(out[0], 0));
    EXPECT_EQ(out[2].value("path").toString(), pathOfRow(out[0], 0));
    EXPECT_GT(out[2].value("count").toInt(), 0);
}

TEST(CliShell, setTakesQuotedJsonAndTheValueStaysForTheSession)
{
    HostRun const run = runHost({"--json", "shell"}, "set settings:ui/language value '\"it_IT\"'\n"
                                                     "get settings:ui/language --roles value\n");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 2);
    EXPECT_EQ(out[0].value("role").toString(), "value");
    QJsonObject const value = out[1].value("roles").toObject().value("value").toObject();
    EXPECT_EQ(value.value("string").toString(), "it_IT");
}

TEST(CliShell, errorsDontEndTheSessionAndTheWorstStatusIsReturned)
{
    HostRun const run = runHost({"--json", "shell"}, "frobnicate\nget 99\nset / value \"unclosed\npwd\n");
    EXPECT_EQ(run.exitCode, 2);
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 4) << run.out.toStdString();
    EXPECT_EQ(out[0].value("error").toObject().value("name").toString(), "usage");
    EXPECT_EQ(out[1].value("error").toObject().value("name").toString(), "noRow");
    EXPECT_EQ(out[2].value("error").toObject().value("name").toString(), "usage");
    EXPECT_EQ(out[3].value("path").toString(), "airable:");
}
