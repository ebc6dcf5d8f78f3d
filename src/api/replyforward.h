#pragma once

#include "cmreply.h"

#include <QVariant>

// Answers one reply with another's answer, on whichever thread that one is
// given: a command passed on to the streamer finishes the client's request.
inline void forwardReply(CMReply<QVariant> const& from, CMReply<QVariant> const& to)
{
    from.onFinished([to](CMReply<QVariant> const& done) {
        if (done.hasError())
            to.setError(done.error());
        else
            to.setValue(done.value());
    });
}
