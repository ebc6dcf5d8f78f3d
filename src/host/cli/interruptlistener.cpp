#include "interruptlistener.h"

#include <QSocketNotifier>
#include <fcntl.h>
#include <unistd.h>

namespace {
// A signal handler may only write to a descriptor; the event loop reads it.
int gWriteEnd = -1;

void onSignal(int number)
{
    char const byte = char(number);
    [[maybe_unused]] ssize_t const n = ::write(gWriteEnd, &byte, 1);
}
} // namespace

InterruptListener::InterruptListener(QObject* parent) : QObject(parent)
{
    if (::pipe2(mPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    gWriteEnd = mPipe[1];
    mNotifier = new QSocketNotifier(mPipe[0], QSocketNotifier::Read, this);
    connect(mNotifier, &QSocketNotifier::activated, this, [this] {
        char buffer[16];
        bool interrupt = false;
        bool terminate = false;
        ssize_t n = 0;
        while ((n = ::read(mPipe[0], buffer, sizeof buffer)) > 0) {
            for (ssize_t i = 0; i < n; ++i) {
                interrupt = interrupt || buffer[i] == SIGINT;
                terminate = terminate || buffer[i] == SIGTERM;
            }
        }
        if (terminate)
            emit terminated();
        else if (interrupt)
            emit interrupted();
    });
    struct sigaction action{};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, &mOldInt);
    sigaction(SIGTERM, &action, &mOldTerm);
}

InterruptListener::~InterruptListener()
{
    if (mPipe[0] < 0)
        return;
    sigaction(SIGINT, &mOldInt, nullptr);
    sigaction(SIGTERM, &mOldTerm, nullptr);
    gWriteEnd = -1;
    delete mNotifier;
    ::close(mPipe[0]);
    ::close(mPipe[1]);
}
