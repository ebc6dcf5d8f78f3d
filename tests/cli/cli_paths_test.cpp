#include "sharedcloud.h"

#include <QJsonArray>

namespace {

class CliPaths : public SharedCloud
{
};

QStringList fullPaths(QJsonObject const& listing)
{
    QStringList paths;
    for (auto const& row : listing.value("rows").toArray())
        paths << row.toObject().value("path").toString();
    return paths;
}

} // namespace

// Service rows, logout rows (airable:logout:...), form rows, a form's
// cancel row (the base URL itself) and episode rows.
TEST_F(CliPaths, everyPathATablePrintsNamesTheSameNodeWhenPastedBack)
{
    for (QString const listing : {"/", "/qobuz", "/deezer", "/airable/feeds/f301", "/airable/radios/popular"}) {
        SCOPED_TRACE(listing.toStdString());
        HostRun const table = host({"ls", listing});
        HostRun const json = host({"--json", "ls", listing, "--roles", "path"});
        ASSERT_EQ(table.exitCode, 0) << table.err.toStdString();
        QStringList const printed = pathColumn(table.out);
        QStringList const full = fullPaths(json.objects().value(0));
        ASSERT_EQ(printed.size(), full.size()) << table.out.toStdString();

        // A dialog's plain rows (a sign-up link) have no path to paste.
        QStringList pastable;
        QStringList expected;
        for (int i = 0; i < full.size(); ++i) {
            if (!full[i].isEmpty()) {
                pastable << printed[i];
                expected << full[i];
            }
        }
        QByteArray script;
        for (QString const& cell : pastable)
            script += "cd '" + cell.toUtf8() + "'\n";
        HostRun const pasted = host({"--json", "shell"}, script);
        ASSERT_EQ(pasted.exitCode, 0) << pasted.err.toStdString();
        QList<QJsonObject> const out = pasted.objects();
        ASSERT_EQ(out.size(), expected.size());
        for (int i = 0; i < expected.size(); ++i)
            EXPECT_EQ(out[i].value("path").toString(), expected[i]) << "printed as " << pastable[i].toStdString();
    }
}

TEST_F(CliPaths, aPastedLogoutRowLogsOut)
{
    // A service the device is logged in to shows its logout row at once.
    logIn("amazon", "me@example.com");
    QStringList const printed = pathColumn(host({"ls", "/amazon"}).out);
    ASSERT_FALSE(printed.isEmpty());
    QString const logout = printed.last();
    EXPECT_TRUE(logout.startsWith("airable:logout:amazon:")) << logout.toStdString();

    // The listing after it is answered once the logout call is out.
    HostRun const run = host({"--json", "shell"}, "set '" + logout.toUtf8() + "' activate true\nls /amazon\n");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QJsonObject const pressed = run.objects().value(0);
    EXPECT_EQ(pressed.value("reply").toObject().value("result").toObject().value("path").toString(), "ui:home");
    EXPECT_EQ(pressed.value("goto").toString(), "ui:home");
    EXPECT_FALSE(pressed.contains("listing")) << "the device's home screen is no listing";
    EXPECT_EQ(queriesTo("/amazon/logout").size(), 1) << "the logout reached the service's own logout URL";
}
