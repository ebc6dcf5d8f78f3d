#include "patience.h"
#include "terminalhost.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
QByteArray const kPrompt("tarn> ");
QByteArray const kCtrlC("\x03");
QByteArray const kCtrlP("\x10"); // previous history line
} // namespace

TEST(CliTerminal, ctrlCClearsThePromptsLineAndAbandonsAWait)
{
    QTemporaryDir home;
    TerminalHost host({"--fault", "/airable/radios=delay:600000", "shell"}, home.path());
    ASSERT_TRUE(host.isStarted());
    ASSERT_TRUE(host.waitFor(kPrompt));

    // A half-typed command is dropped, and the session goes on.
    host.type("ls /airable/rad" + kCtrlC);
    ASSERT_TRUE(host.waitFor(kPrompt)) << host.output().toStdString();
    host.type("pwd\r");
    ASSERT_TRUE(host.waitFor("pwd\r\n/\r\n" + kPrompt)) << host.output().toStdString();
    EXPECT_FALSE(host.output().contains("tarn-host:")) << "the cleared line ran: " << host.output().toStdString();

    // A request the cloud sits on for ten minutes is given up at once.
    QElapsedTimer clock;
    clock.start();
    host.type("ls /airable/radios\r");
    ASSERT_TRUE(host.waitFor("ls /airable/radios\r\n"));
    host.type(kCtrlC);
    ASSERT_TRUE(host.waitFor("tarn-host: Interrupted")) << host.output().toStdString();
    ASSERT_TRUE(host.waitFor(kPrompt));
    EXPECT_LT(clock.elapsed(), 300000);

    host.type("pwd\r");
    ASSERT_TRUE(host.waitFor("/\r\n" + kPrompt)) << host.output().toStdString();
    host.type("quit\r");
    EXPECT_EQ(host.finish(), 1) << "the abandoned command counts as failed";
}

TEST(CliTerminal, historyIsSavedAfterEachCommandAndRecalledNextTime)
{
    QTemporaryDir home;
    QString const historyFile = home.filePath(".tarn_host_history");
    {
        TerminalHost host({"shell"}, home.path());
        ASSERT_TRUE(host.waitFor(kPrompt));
        host.type("cd /airable/radios\r");
        ASSERT_TRUE(host.waitFor(kPrompt));
        // On disk while the session still runs: a crash loses nothing.
        QFile history(historyFile);
        ASSERT_TRUE(history.open(QIODevice::ReadOnly));
        EXPECT_EQ(history.readAll(), QByteArray("cd /airable/radios\n"));
        host.type("quit\r");
        EXPECT_EQ(host.finish(), 0);
    }
    TerminalHost again({"shell"}, home.path());
    ASSERT_TRUE(again.waitFor(kPrompt));
    again.type(kCtrlP + kCtrlP + "\r");
    ASSERT_TRUE(again.waitFor("/airable/radios\r\n" + kPrompt)) << again.output().toStdString();
    again.type("pwd\r");
    ASSERT_TRUE(again.waitFor("pwd\r\n/airable/radios\r\n")) << again.output().toStdString();
}
