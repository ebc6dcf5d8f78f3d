#pragma once

#include "patience.h"

#include <QByteArray>
#include <QStringList>
#include <sys/types.h>

// tarn-host on a pseudo-terminal, typed at as a person types: its standard
// input and output are a terminal, so it prompts with line editing, and a
// typed Ctrl-C reaches it as the terminal's interrupt signal.
class TerminalHost
{
public:
    // home: the HOME the host sees, for its history file.
    TerminalHost(QStringList const& arguments, QString const& home);
    ~TerminalHost();
    TerminalHost(TerminalHost const&) = delete;
    TerminalHost& operator=(TerminalHost const&) = delete;

    bool isStarted() const { return mPid > 0; }
    void type(QByteArray const& keys);
    // Reads output until text appears after what earlier waits matched;
    // false when ms pass first.
    bool waitFor(QByteArray const& text, int ms = kPatienceMs);
    QByteArray output() const { return mOutput; }
    // Waits for the end; the exit status, or -1 when it didn't end in ms.
    int finish(int ms = kPatienceMs);

private:
    bool readSome(int ms);

    pid_t mPid = -1;
    int mFd = -1;
    QByteArray mOutput;
    int mMatched = 0;
};
