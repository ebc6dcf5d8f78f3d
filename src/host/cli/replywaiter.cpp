#include "replywaiter.h"
#include "interruptlistener.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <cstdio>

namespace {
int const kSpinnerTickMs = 100;
int const kSpinnerAfterMs = 1000;
char const kSpinnerFrames[] = "|/-\\";
} // namespace

ReplyWaiter::ReplyWaiter(int timeoutMs, bool spinner) : mTimeoutMs(timeoutMs), mSpinner(spinner) {}

ReplyWaiter::Outcome ReplyWaiter::wait(CMVoidReply const& reply) const
{
    if (reply.isFinished())
        return reply.data()->isCancelled() ? Outcome::Interrupted : Outcome::Finished;

    QEventLoop loop;
    Outcome outcome = Outcome::Finished;
    auto const end = [&loop, &outcome](Outcome why) {
        outcome = why;
        loop.quit();
    };
    // Queued, so that a reply finished before exec() still ends the loop.
    reply.addWatcher(&loop, [&loop](CMVoidReply const&) { loop.quit(); }, Qt::QueuedConnection);
    // A timer of the wait's own, gone with it: a single shot would stay
    // registered for the whole time-out after each wait, however soon the
    // reply came.
    QTimer timeout;
    timeout.setSingleShot(true);
    QObject::connect(&timeout, &QTimer::timeout, &loop, [&end] { end(Outcome::TimedOut); });
    timeout.start(mTimeoutMs);
    if (mInterrupts) {
        QObject::connect(mInterrupts, &InterruptListener::interrupted, &loop, [&end] { end(Outcome::Interrupted); });
        QObject::connect(mInterrupts, &InterruptListener::terminated, &loop, [&end] { end(Outcome::Terminated); });
    }
    QElapsedTimer elapsed;
    elapsed.start();
    bool spun = false;
    int frame = 0;
    QTimer spinner;
    if (mSpinner) {
        QObject::connect(&spinner, &QTimer::timeout, &loop, [&] {
            if (elapsed.elapsed() < kSpinnerAfterMs)
                return;
            std::fprintf(stderr, "\r%c waiting", kSpinnerFrames[frame++ % 4]);
            std::fflush(stderr);
            spun = true;
        });
        spinner.start(kSpinnerTickMs);
    }
    loop.exec();
    spinner.stop();
    if (spun) {
        std::fprintf(stderr, "\r         \r");
        std::fflush(stderr);
    }
    if (reply.isFinished() && !reply.data()->isCancelled())
        return Outcome::Finished;
    reply.cancel();
    return outcome == Outcome::Finished ? Outcome::TimedOut : outcome;
}
