#include "hostprocess.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

QString languageOf(QJsonObject const& get)
{
    return get.value("roles").toObject().value("value").toObject().value("string").toString();
}

QString languageOf(HostRun const& run)
{
    return languageOf(run.objects().value(0));
}

} // namespace

TEST(CliSettings, configFileIsReadAndOptionsWinOverIt)
{
    QTemporaryDir dir;
    QString const file = dir.filePath("tarn.ini");
    QFile ini(file);
    ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
    ini.write("# device settings\n[device]\nlanguage = de_DE\nmodel = \"Kitchen Speaker\"\npage-size=10\n");
    ini.close();

    QStringList const get{"--json", "get", "settings:ui/language", "--roles", "value"};
    EXPECT_EQ(languageOf(runHost(QStringList{"--config", file} + get)), "de_DE");
    EXPECT_EQ(languageOf(runHost(QStringList{"--config", file, "--language", "fr_FR"} + get)), "fr_FR");
    EXPECT_EQ(languageOf(runHost(get + QStringList{"--language=fr_FR", "--config", file})), "fr_FR");

    HostRun const paged = runHost({"--json", "--config", file, "ls", "/airable/radios/all"});
    EXPECT_EQ(paged.objects().value(0).value("to").toInt(), 9);
}

TEST(CliSettings, configFileRejectsKeysThatAreNoSettings)
{
    QTemporaryDir dir;
    QString const file = dir.filePath("tarn.ini");
    QFile ini(file);
    ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
    ini.write("language = de_DE\njson = true\n");
    ini.close();
    HostRun const run = runHost({"--config", file, "ls"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.contains("tarn.ini:2: unknown key 'json'")) << run.err.toStdString();
}

TEST(CliSettings, logGoesToTheFileAtTheChosenLevel)
{
    QTemporaryDir dir;
    QString const log = dir.filePath("host.log");
    HostRun const run = runHost({"--log", log, "--log-level", "trace", "ls"});
    ASSERT_EQ(run.exitCode, 0);
    QFile file(log);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QByteArray const text = file.readAll();
    EXPECT_TRUE(text.contains("TRACE CB_Airable")) << text.left(500).toStdString();
    EXPECT_FALSE(run.err.contains("CB_Airable"));
}

TEST(CliSettings, helpDescribesTheToolAndEachCommand)
{
    HostRun const tool = runHost({"--help"});
    EXPECT_EQ(tool.exitCode, 0);
    for (char const* command : {"ls", "get", "set", "play", "watch", "shell", "--cloud", "--json"})
        EXPECT_TRUE(tool.out.contains(QString::fromUtf8(command))) << command;

    HostRun const ls = runHost({"ls", "--help"});
    EXPECT_EQ(ls.exitCode, 0);
    EXPECT_TRUE(ls.out.startsWith("Usage: ls")) << ls.out.toStdString();
    EXPECT_TRUE(ls.out.contains("--no-follow"));

    HostRun const shell = runHost({"shell"}, "help\nhelp cd\n");
    EXPECT_EQ(shell.exitCode, 0);
    EXPECT_TRUE(shell.out.contains("back")) << shell.out.toStdString();
    EXPECT_TRUE(shell.out.contains("Usage: cd"));
}

TEST(CliSettings, platformValuesAreCheckedByTypeAndABadOneIsNotStored)
{
    HostRun const run = runHost({"--json", "shell"}, "set settings:ui/language value 3\n"
                                                     "set settings:ui/language value '{\"int\":3}'\n"
                                                     "set settings:airable/streamBitrate value '\"high\"'\n"
                                                     "set settings:airable/streamBitrate value 1e12\n"
                                                     "set settings:airable/config value '\"x\"'\n"
                                                     "get settings:ui/language --roles value\n"
                                                     "set settings:airable/streamBitrate value 192\n"
                                                     "set settings:ui/language value '{\"string\":\"de_DE\"}'\n"
                                                     "get settings:airable/streamBitrate --roles value\n");
    EXPECT_EQ(run.exitCode, 1);
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 9) << run.out.toStdString();
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(out[i].value("error").toObject().value("name").toString(), "invalidArgument") << i;
    EXPECT_TRUE(out[0].value("error").toObject().value("message").toString().contains("takes a string"));
    EXPECT_TRUE(out[2].value("error").toObject().value("message").toString().contains("takes a whole number"));
    EXPECT_EQ(languageOf(out[5]), "en_US");
    EXPECT_FALSE(out[6].contains("error"));
    EXPECT_FALSE(out[7].contains("error"));
    QJsonObject const bitrate = out[8].value("roles").toObject().value("value").toObject();
    EXPECT_EQ(bitrate, QJsonObject({{"airableStreamBitrate", 192}})) << "a bare number takes the value's own field";
}
