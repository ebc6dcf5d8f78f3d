#include "controlqueue.h"
#include "tarnplaylogicrecords.h"
#include "tarnword.h"
#include "../tarnlog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

TARN_WORD(ControlQueue::CancelledErrorName, "cancelled")

namespace {

CMError cancelled(QString const& why)
{
    return CMError(ControlQueue::CancelledErrorName(), TrString(why));
}

} // namespace

ControlQueue::ControlQueue(bool playDropsWaiting, bool singlePrepare, QObject* parent)
    : QObject(parent), m_playDropsWaiting(playDropsWaiting), m_singlePrepare(singlePrepare)
{
    tarnPlayRegisterMetaTypes();
}

// Nobody is left to work what waits, so its clients hear it was dropped
// rather than wait for ever.
ControlQueue::~ControlQueue()
{
    clear();
}

void ControlQueue::play(QVariant const& value, CMReply<QVariant> const& reply)
{
    if (m_playDropsWaiting)
        cancelWaiting(QStringLiteral("Replaced by a new play command"));
    enqueue({Play, value, reply});
}

void ControlQueue::next(QVariant const& value, CMReply<QVariant> const& reply)
{
    enqueue({Next, value, reply});
}

void ControlQueue::previous(QVariant const& value, CMReply<QVariant> const& reply)
{
    enqueue({Previous, value, reply});
}

void ControlQueue::prepareNext()
{
    if (m_singlePrepare) {
        bool pending = m_busy && m_current.command == PrepareNext;
        for (auto const& c : m_waiting)
            pending = pending || c.command == PrepareNext;
        if (pending) {
            LOG4CPLUS_DEBUG(logger, "Prepare next already queued");
            return;
        }
    }
    enqueue({PrepareNext, QVariant()});
}

void ControlQueue::enqueue(Command const& command)
{
    m_waiting.enqueue(command);
    scheduleStart();
}

void ControlQueue::cancelWaiting(QString const& why)
{
    // Taken out first: a reply's hook may queue anew.
    QQueue<Command> dropped;
    dropped.swap(m_waiting);
    for (auto const& c : dropped)
        if (!c.reply.isNull())
            c.reply.setError(cancelled(why));
}

void ControlQueue::finish(QVariant const& value)
{
    end([&value](CMReply<QVariant> const& reply) { reply.setValue(value); });
}

void ControlQueue::finish(CMError const& error)
{
    end([&error](CMReply<QVariant> const& reply) { reply.setError(error); });
}

void ControlQueue::end(std::function<void(CMReply<QVariant> const&)> const& answer)
{
    if (!m_busy) {
        LOG4CPLUS_WARN(logger, "Control queue: finish without a command being worked");
        return;
    }
    CMReply<QVariant> const reply = m_current.reply;
    LOG4CPLUS_DEBUG(logger, "Control command " << int(m_current.command) << " finished");
    m_busy = false;
    m_current = Command{};
    if (!reply.isNull())
        answer(reply);
    scheduleStart();
}

void ControlQueue::clear()
{
    if (m_busy) {
        CMReply<QVariant> const reply = m_current.reply;
        m_busy = false;
        m_current = Command{};
        if (!reply.isNull())
            reply.setError(cancelled(QStringLiteral("Command cancelled")));
    }
    cancelWaiting(QStringLiteral("Command cancelled"));
}

void ControlQueue::scheduleStart()
{
    if (m_busy || m_startScheduled || m_waiting.isEmpty())
        return;
    m_startScheduled = true;
    QMetaObject::invokeMethod(this, [this] {
        m_startScheduled = false;
        startNext();
    }, Qt::QueuedConnection);
}

void ControlQueue::startNext()
{
    if (m_busy || m_waiting.isEmpty())
        return;
    m_current = m_waiting.dequeue();
    m_busy = true;
    LOG4CPLUS_DEBUG(logger, "Control command " << int(m_current.command) << " started");
    emit control(m_current.command, m_current.value);
}
