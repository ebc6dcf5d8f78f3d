#pragma once

#include "cmreply.h"

class InterruptListener;

// Waits for replies while serving this thread's events. A wait of more than
// a second turns a spinner on standard error, when it is a terminal. With
// an interrupt listener, Ctrl-C abandons the wait.
class ReplyWaiter
{
public:
    enum class Outcome
    {
        Finished,
        TimedOut,
        Interrupted, // Ctrl-C
        Terminated,  // the process is asked to end
    };

    ReplyWaiter(int timeoutMs, bool spinner);

    void setInterrupts(InterruptListener* interrupts) { mInterrupts = interrupts; }

    // Unless the reply finished, it is abandoned.
    Outcome wait(CMVoidReply const& reply) const;
    int timeoutMs() const { return mTimeoutMs; }

private:
    int mTimeoutMs;
    bool mSpinner;
    InterruptListener* mInterrupts = nullptr;
};
