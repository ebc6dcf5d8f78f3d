#pragma once

#include "cmreply.h"

// Waits for replies while serving this thread's events. A wait of more than
// a second turns a spinner on standard error, when it is a terminal.
class ReplyWaiter
{
public:
    ReplyWaiter(int timeoutMs, bool spinner);

    // False when no answer came in time; the reply is then abandoned.
    bool wait(CMVoidReply const& reply) const;
    int timeoutMs() const { return mTimeoutMs; }

private:
    int mTimeoutMs;
    bool mSpinner;
};
