#include "childprocess.h"

#include <QElapsedTimer>
#include <QList>
#include <QStandardPaths>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

void closeFd(int& fd)
{
    if (fd >= 0)
        close(fd);
    fd = -1;
}

} // namespace

ChildProcess::ChildProcess(ProgramCommand const& command)
{
    // Everything the child needs is made before the fork: between fork and
    // exec only async-signal-safe calls are allowed.
    QString const path = command.program.contains(QLatin1Char('/'))
                             ? command.program
                             : QStandardPaths::findExecutable(command.program);
    if (path.isEmpty())
        return;
    QList<QByteArray> args{path.toLocal8Bit()};
    for (QString const& a : command.arguments)
        args << a.toLocal8Bit();
    std::vector<char*> argv;
    for (QByteArray& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);

    // input, output, error, and one that tells a failed exec: it closes on a
    // good one, or carries errno.
    int pipes[4][2] = {{-1, -1}, {-1, -1}, {-1, -1}, {-1, -1}};
    auto const closeAll = [&pipes] {
        for (auto& p : pipes) {
            closeFd(p[0]);
            closeFd(p[1]);
        }
    };
    for (auto& p : pipes) {
        if (pipe2(p, O_CLOEXEC) != 0) {
            closeAll();
            return;
        }
    }
    int (&in)[2] = pipes[0];
    int (&out)[2] = pipes[1];
    int (&err)[2] = pipes[2];
    int (&exec)[2] = pipes[3];

    mPid = fork();
    if (mPid == 0) {
        // The program starts with the signals as a shell would give them,
        // not with what the test blocked or ignored.
        struct sigaction byDefault {};
        byDefault.sa_handler = SIG_DFL;
        sigaction(SIGPIPE, &byDefault, nullptr);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        if (dup2(in[0], 0) == 0 && dup2(out[1], 1) == 1 && dup2(err[1], 2) == 2)
            execve(argv[0], argv.data(), environ);
        int const error = errno;
        [[maybe_unused]] ssize_t const n = ::write(exec[1], &error, sizeof error);
        _exit(127);
    }
    if (mPid < 0) {
        closeAll();
        return;
    }
    closeFd(in[0]);
    closeFd(out[1]);
    closeFd(err[1]);
    closeFd(exec[1]);
    int error = 0;
    ssize_t n;
    do
        n = read(exec[0], &error, sizeof error);
    while (n < 0 && errno == EINTR);
    if (n > 0) {
        reap(0);
        mExitCode = -1;
        closeAll();
        return;
    }
    mStarted = true;
    mInput = std::exchange(in[1], -1);
    mOutput = std::exchange(out[0], -1);
    mError = std::exchange(err[0], -1);
    closeAll();
    // Writing waits in poll() rather than in write(), so that the outputs
    // are read meanwhile.
    fcntl(mInput, F_SETFL, fcntl(mInput, F_GETFL) | O_NONBLOCK);
}

ChildProcess::~ChildProcess()
{
    closeFd(mInput);
    kill();
    closeFd(mOutput);
    closeFd(mError);
}

bool ChildProcess::write(QByteArray const& data, int ms)
{
    // A child that no longer reads would end the test with SIGPIPE: the
    // signal is held back on this thread while writing, and one that the
    // write raised is taken back before it is let through again.
    sigset_t pipeSignal;
    sigset_t before;
    sigset_t pending;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipeSignal, &before);
    sigpending(&pending);
    bool const wasPending = sigismember(&pending, SIGPIPE);

    QElapsedTimer clock;
    clock.start();
    int done = 0;
    bool broken = false;
    while (done < data.size() && mInput >= 0) {
        ssize_t const n = ::write(mInput, data.constData() + done, size_t(data.size() - done));
        if (n >= 0) {
            done += int(n);
            continue;
        }
        if (errno == EINTR)
            continue;
        if (errno != EAGAIN) {
            broken = true;
            break;
        }
        qint64 const left = ms - clock.elapsed();
        if (left <= 0)
            break;
        pump(int(left), true);
    }

    sigpending(&pending);
    if (broken && !wasPending && sigismember(&pending, SIGPIPE)) {
        timespec const now{0, 0};
        sigtimedwait(&pipeSignal, nullptr, &now);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return done == data.size();
}

void ChildProcess::closeInput()
{
    closeFd(mInput);
}

QByteArray ChildProcess::readLine(int ms)
{
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        int const end = mOut.indexOf('\n');
        if (end >= 0) {
            QByteArray const line = mOut.left(end + 1);
            mOut.remove(0, end + 1);
            return line;
        }
        if (mOutput < 0)
            return std::exchange(mOut, QByteArray());
        qint64 const left = ms - clock.elapsed();
        if (left <= 0)
            return QByteArray();
        pump(int(left));
    }
}

bool ChildProcess::waitForReadyRead(int ms)
{
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        qint64 const left = ms - clock.elapsed();
        if (left <= 0 || (mOutput < 0 && mError < 0))
            return false;
        if (pump(int(left)))
            return true;
    }
}

QByteArray ChildProcess::readAllStandardOutput()
{
    pump(0);
    return std::exchange(mOut, QByteArray());
}

QByteArray ChildProcess::readAllStandardError()
{
    pump(0);
    return std::exchange(mErr, QByteArray());
}

bool ChildProcess::waitForFinished(int ms)
{
    QElapsedTimer clock;
    clock.start();
    while (mPid > 0 && !reap(WNOHANG)) {
        qint64 const left = ms - clock.elapsed();
        if (left <= 0)
            return false;
        // The outputs mostly end with the child; the short step still
        // notices an end after a child closed them early.
        int const step = int(qMin<qint64>(left, 20));
        if (mOutput < 0 && mError < 0)
            poll(nullptr, 0, step);
        else
            pump(step);
    }
    while (pump(0)) {
    }
    return true;
}

void ChildProcess::terminate()
{
    if (mPid > 0)
        ::kill(mPid, SIGTERM);
}

void ChildProcess::kill()
{
    if (mPid <= 0)
        return;
    ::kill(mPid, SIGKILL);
    reap(0);
    while (pump(0)) {
    }
}

bool ChildProcess::pump(int ms, bool toWrite)
{
    pollfd fds[3];
    nfds_t n = 0;
    for (int fd : {mOutput, mError}) {
        if (fd >= 0)
            fds[n++] = {fd, POLLIN, 0};
    }
    if (toWrite && mInput >= 0)
        fds[n++] = {mInput, POLLOUT, 0};
    if (n == 0 || poll(fds, n, ms) <= 0)
        return false;
    bool progress = false;
    for (nfds_t i = 0; i < n; ++i) {
        if (fds[i].revents == 0)
            continue;
        if (fds[i].fd == mInput) {
            progress = true;
            continue;
        }
        bool const isOutput = fds[i].fd == mOutput;
        char chunk[65536];
        ssize_t const got = read(fds[i].fd, chunk, sizeof chunk);
        if (got > 0) {
            (isOutput ? mOut : mErr).append(chunk, int(got));
            progress = true;
        } else if (got == 0 || errno != EINTR) {
            closeFd(isOutput ? mOutput : mError);
        }
    }
    return progress;
}

bool ChildProcess::reap(int options)
{
    int status = 0;
    pid_t got;
    do
        got = waitpid(mPid, &status, options);
    while (got < 0 && errno == EINTR);
    if (got == 0)
        return false;
    // A child someone else reaped counts as ended, without a code.
    mExitCode = got == mPid && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    mPid = -1;
    return true;
}
