#include "replywaiter.h"

#include "tarnclient.h"

#include <QElapsedTimer>
#include <cstdio>

namespace {
int const kSliceMs = 100;
int const kSpinnerAfterMs = 1000;
char const kSpinnerFrames[] = "|/-\\";
} // namespace

ReplyWaiter::ReplyWaiter(int timeoutMs, bool spinner) : mTimeoutMs(timeoutMs), mSpinner(spinner) {}

bool ReplyWaiter::wait(CMVoidReply const& reply) const
{
    QElapsedTimer elapsed;
    elapsed.start();
    bool spun = false;
    int frame = 0;
    while (!TarnClient::wait(reply, kSliceMs)) {
        if (elapsed.elapsed() >= mTimeoutMs) {
            reply.cancel();
            break;
        }
        if (mSpinner && elapsed.elapsed() >= kSpinnerAfterMs) {
            std::fprintf(stderr, "\r%c waiting", kSpinnerFrames[frame++ % 4]);
            std::fflush(stderr);
            spun = true;
        }
    }
    if (spun) {
        std::fprintf(stderr, "\r         \r");
        std::fflush(stderr);
    }
    return reply.isFinished() && !reply.data()->isCancelled();
}
