#include "terminalhost.h"
#include "program.h"
#include "testprograms.h"

#include <QElapsedTimer>
#include <QProcessEnvironment>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

TerminalHost::TerminalHost(QStringList const& arguments, QString const& home)
{
    // Everything the child needs is made before the fork: between fork and
    // exec only async-signal-safe calls are allowed.
    ProgramCommand const host = programCommand(QStringLiteral(TARN_HOST_BINARY), arguments);
    QList<QByteArray> args{host.program.toLocal8Bit()};
    for (QString const& a : host.arguments)
        args << a.toLocal8Bit();
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), home);
    env.insert(QStringLiteral("TERM"), QStringLiteral("dumb"));
    QList<QByteArray> envs;
    for (QString const& e : env.toStringList())
        envs << e.toLocal8Bit();
    std::vector<char*> argv;
    for (QByteArray& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    std::vector<char*> envp;
    for (QByteArray& e : envs)
        envp.push_back(e.data());
    envp.push_back(nullptr);

    mPid = forkpty(&mFd, nullptr, nullptr, nullptr);
    if (mPid == 0) {
        execve(argv[0], argv.data(), envp.data());
        _exit(127);
    }
}

TerminalHost::~TerminalHost()
{
    if (mPid > 0) {
        kill(mPid, SIGKILL);
        waitpid(mPid, nullptr, 0);
    }
    if (mFd >= 0)
        close(mFd);
}

void TerminalHost::type(QByteArray const& keys)
{
    [[maybe_unused]] ssize_t const n = write(mFd, keys.constData(), size_t(keys.size()));
}

bool TerminalHost::readSome(int ms)
{
    pollfd p{mFd, POLLIN, 0};
    if (poll(&p, 1, ms) <= 0)
        return false;
    char buffer[4096];
    ssize_t const n = read(mFd, buffer, sizeof buffer);
    if (n <= 0)
        return false;
    mOutput.append(buffer, int(n));
    return true;
}

bool TerminalHost::waitFor(QByteArray const& text, int ms)
{
    QElapsedTimer elapsed;
    elapsed.start();
    for (;;) {
        int const at = mOutput.indexOf(text, mMatched);
        if (at >= 0) {
            mMatched = at + text.size();
            return true;
        }
        qint64 const left = ms - elapsed.elapsed();
        if (left <= 0)
            return false;
        readSome(int(qMin<qint64>(left, 100)));
    }
}

int TerminalHost::finish(int ms)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (elapsed.elapsed() < ms) {
        int status = 0;
        if (waitpid(mPid, &status, WNOHANG) == mPid) {
            mPid = -1;
            while (readSome(0)) {
            }
            if (WIFSIGNALED(status))
                std::fprintf(stderr, "tarn-host ended by signal %d\n", WTERMSIG(status));
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }
        readSome(50);
    }
    return -1;
}
