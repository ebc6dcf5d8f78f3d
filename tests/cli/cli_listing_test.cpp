#include "sharedcloud.h"

#include <QRegularExpression>

#include <QJsonArray>
#include <gtest/gtest.h>

namespace {
QStringList const kSomeServices{"Radios", "Podcasts", "Deezer", "Qobuz", "TIDAL"};

class CliListingRedirects : public SharedCloud
{
};
} // namespace

TEST(CliListing, rootShowsTheServicesAsAnAlignedTable)
{
    HostRun const run = runHost({"ls"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    for (QString const& service : kSomeServices)
        EXPECT_TRUE(run.out.contains(service)) << service.toStdString();
    QStringList const lines = run.out.split('\n');
    int const header = lines.indexOf(QRegularExpression("^#\\s+TITLE\\s+TYPE\\s+PATH$"));
    ASSERT_GE(header, 0) << run.out.toStdString();
    // Rows line up under the header's columns.
    int const pathColumn = lines[header].indexOf("PATH");
    EXPECT_EQ(lines[header + 1].indexOf('/', pathColumn - 1), pathColumn) << lines[header + 1].toStdString();
    EXPECT_TRUE(run.out.contains(QRegularExpression("rows 0-\\d+ of \\d+")));
}

TEST(CliListing, rootAsJsonIsOneObjectWithRowsKeyedByRoleName)
{
    HostRun const run = runHost({"--json", "ls", "/"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const objects = run.objects();
    ASSERT_EQ(objects.size(), 1);
    QJsonObject const listing = objects.first();
    QJsonArray const rows = listing.value("rows").toArray();
    EXPECT_EQ(listing.value("count").toInt(), rows.size());
    EXPECT_EQ(listing.value("path").toString(), "airable:");
    EXPECT_FALSE(listing.value("roles").toObject().value("title").toString().isEmpty());
    EXPECT_FALSE(listing.contains("redirect"));
    for (QString const& service : kSomeServices)
        EXPECT_TRUE(titlesOf(listing).contains(service)) << service.toStdString();
    for (auto const& row : rows)
        EXPECT_TRUE(row.toObject().value("path").toString().startsWith("airable:http://127.0.0.1:"));
}

TEST(CliListing, rolesOptionAndRangeShapeTheRows)
{
    HostRun const run = runHost({"--json", "ls", "/airable/radios/all", "25", "29", "--roles", "title,type"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QJsonObject const listing = run.objects().value(0);
    EXPECT_EQ(listing.value("from").toInt(), 25);
    EXPECT_EQ(listing.value("count").toInt(), 230);
    QJsonArray const rows = listing.value("rows").toArray();
    ASSERT_EQ(rows.size(), 5);
    for (auto const& row : rows)
        EXPECT_EQ(row.toObject().keys(), QStringList({"title", "type"}));
}

TEST(CliListing, getReadsOnePathsRolesAndStoredPlatformValues)
{
    HostRun const service = runHost({"--json", "get", "/airable/radios", "--roles", "title,type"});
    ASSERT_EQ(service.exitCode, 0) << service.err.toStdString();
    QJsonObject const roles = service.objects().value(0).value("roles").toObject();
    EXPECT_FALSE(roles.value("title").toString().isEmpty());
    EXPECT_EQ(roles.value("type").toString(), "container");

    HostRun const value = runHost({"get", "settings:ui/language", "--roles", "value"});
    ASSERT_EQ(value.exitCode, 0) << value.err.toStdString();
    EXPECT_TRUE(value.out.contains("en_US")) << value.out.toStdString();
}

TEST_F(CliListingRedirects, redirectsAreFollowedOrShown)
{
    // Logged in, TIDAL's index is its home; without, its login dialog.
    logIn("tidal", "me@example.com");
    HostRun const shown = host({"--json", "ls", "/tidal/index", "--no-follow"});
    ASSERT_EQ(shown.exitCode, 0) << shown.err.toStdString();
    QJsonObject const redirect = shown.objects().value(0);
    EXPECT_TRUE(redirect.value("redirect").toString().endsWith("/tidal"));
    EXPECT_TRUE(redirect.value("rows").toArray().isEmpty());

    HostRun const followed = host({"--json", "ls", "/tidal/index"});
    ASSERT_EQ(followed.exitCode, 0) << followed.err.toStdString();
    QJsonObject const listing = followed.objects().value(0);
    EXPECT_TRUE(listing.value("path").toString().endsWith("/tidal"));
    EXPECT_EQ(listing.value("redirect").toString(), listing.value("path").toString());
    EXPECT_GT(listing.value("rows").toArray().size(), 0);
}

TEST(CliListing, pathsBelowTheBaseUrlMayBeWrittenShort)
{
    HostRun const run = runHost({"--json", "shell"}, "ls / 0 0 --roles path\n"
                                                     "get /airable/radios --roles path\n"
                                                     "get 0 --roles path\n");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 3);
    QString const full = out[0].value("rows").toArray().at(0).toObject().value("path").toString();
    EXPECT_TRUE(full.startsWith("airable:http://127.0.0.1:")) << full.toStdString();
    EXPECT_TRUE(full.endsWith("/airable/radios")) << full.toStdString();
    EXPECT_EQ(out[1].value("path").toString(), full);
    EXPECT_EQ(out[2].value("path").toString(), full);
}

TEST(CliListing, playResolvesARadioToItsStream)
{
    HostRun const run = runHost({"play", "/airable/radios/r1001"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains(QStringLiteral("prePlay airable:preplay")));
    EXPECT_TRUE(run.out.contains(QRegularExpression(QStringLiteral("^played http://127\\.0\\.0\\.1:\\d+/media/"),
                                                    QRegularExpression::MultilineOption)));

    QList<QJsonObject> const json = runHost({"--json", "play", "/airable/radios/r1001"}).objects();
    ASSERT_EQ(json.size(), 1);
    EXPECT_EQ(json[0].value("state").toString(), QStringLiteral("playing"));
    EXPECT_TRUE(json[0].value("uri").toString().contains(QStringLiteral("/media/")));
}
