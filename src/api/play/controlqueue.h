#pragma once

#include "cmreply.h"

#include <QObject>
#include <QQueue>
#include <QVariant>
#include <functional>

// Works the commands of a play logic one at a time. A command is queued
// with the reply of the client's request; control() hands it to the play
// logic, which ends it with exactly one finish(), and only then does the
// next one start. Starts come on a later turn of the event loop, so a
// command's reply is answered, and whatever its answer sets off has run,
// before the next command begins.
//
// Used on the thread the queue lives on only.
class ControlQueue : public QObject
{
    Q_OBJECT
public:
    // The numbers are the platform's and travel as such.
    enum ControlCommand : int {
        Play = 0,
        Next = 1,
        Previous = 2,
        PrepareNext = 4,
    };
    Q_ENUM(ControlCommand)

    // playDropsWaiting: a play cancels the commands still waiting, which
    //   belong to what played before; the one being worked ends as it will.
    // singlePrepare: a prepare while another is waiting or being worked is
    //   not queued again, as both would ask for the same following media.
    ControlQueue(bool playDropsWaiting, bool singlePrepare, QObject* parent = nullptr);
    ~ControlQueue() override;

    void play(QVariant const& value, CMReply<QVariant> const& reply);
    void next(QVariant const& value, CMReply<QVariant> const& reply);
    void previous(QVariant const& value, CMReply<QVariant> const& reply);
    // Asks for the media that follows what plays; nobody waits for an answer.
    void prepareNext();

    // End the command being worked: its reply gets the value or the error.
    // Without a command being worked this is a fault of the caller, logged
    // and otherwise ignored.
    void finish(QVariant const& value);
    void finish(CMError const& error);

    // Drops every command, the one being worked included: their replies get
    // the error named CancelledErrorName(). The work of the dropped command
    // must end without a finish(), which would end the next one instead.
    void clear();

    bool isBusy() const { return m_busy; }
    int waitingCount() const { return m_waiting.size(); }

    static QString const& CancelledErrorName();

signals:
    // Work this command now, and finish() it.
    void control(ControlQueue::ControlCommand command, QVariant const& value);

private:
    struct Command
    {
        ControlCommand command = Play;
        QVariant value;
        // Null for a prepare, which has nobody to answer.
        CMReply<QVariant> reply{CMVoidReply()};
    };

    void enqueue(Command const& command);
    void cancelWaiting(QString const& why);
    void end(std::function<void(CMReply<QVariant> const&)> const& answer);
    void scheduleStart();
    void startNext();

    bool m_playDropsWaiting;
    bool m_singlePrepare;
    QQueue<Command> m_waiting;
    Command m_current;
    bool m_busy = false;
    bool m_startScheduled = false;
};
