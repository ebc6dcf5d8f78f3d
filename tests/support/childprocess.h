#pragma once

#include "patience.h"
#include "program.h"

#include <QByteArray>
#include <sys/types.h>

// A program a test starts and talks to through three pipes. Made of fork and
// exec rather than QProcess, whose way of starting a child the emulator that
// runs cross-built tests cannot do. It inherits the test's environment.
//
// Both outputs are read into buffers whenever the test waits on anything, so
// a child that writes a lot never blocks on a full pipe.
class ChildProcess
{
public:
    // Starts the command as given: programCommand() puts the emulator in
    // front for the project's programs; a build-machine tool goes without.
    explicit ChildProcess(ProgramCommand const& command);
    ~ChildProcess();
    ChildProcess(ChildProcess const&) = delete;
    ChildProcess& operator=(ChildProcess const&) = delete;

    bool isStarted() const { return mStarted; }
    bool isRunning() const { return mPid > 0; }
    // The child's process id while it runs (under an emulator, the
    // emulator's); -1 before it started and once it ended.
    pid_t pid() const { return mPid; }

    // Writes all of data to standard input; false when the child stopped
    // reading or ms passed first.
    bool write(QByteArray const& data, int ms = 60000);
    // The child sees the end of its input.
    void closeInput();

    // The next line of standard output, with its '\n' (a last line without
    // one once the output ends); empty when none came within ms.
    QByteArray readLine(int ms = kPatienceMs);
    // Waits until more output, of either kind, came; false when ms passed
    // or both outputs ended first.
    bool waitForReadyRead(int ms);
    // What the child wrote and the test has not read yet.
    QByteArray readAllStandardOutput();
    QByteArray readAllStandardError();

    // Waits for the end; false when ms passed first.
    bool waitForFinished(int ms = 60000);
    // The exit code; -1 while running or when a signal ended the child.
    int exitCode() const { return mExitCode; }

    // Asks the child to end (SIGTERM).
    void terminate();
    // Ends the child at once (SIGKILL) and waits for it.
    void kill();

private:
    // Reads what the outputs have, waiting up to ms for something (or, with
    // toWrite, for room in the input); false when neither came.
    bool pump(int ms, bool toWrite = false);
    bool reap(int options);

    pid_t mPid = -1;
    bool mStarted = false;
    int mExitCode = -1;
    int mInput = -1;
    int mOutput = -1;
    int mError = -1;
    QByteArray mOut;
    QByteArray mErr;
};
