#pragma once

#include <QObject>
#include <csignal>

class QSocketNotifier;

// Turns SIGINT into the signal interrupted() and SIGTERM into terminated(),
// delivered by the event loop, for as long as the object lives; the earlier
// handlers come back with its end. One at a time.
class InterruptListener : public QObject
{
    Q_OBJECT
public:
    explicit InterruptListener(QObject* parent = nullptr);
    ~InterruptListener() override;

signals:
    // Ctrl-C: give up what is under way.
    void interrupted();
    // The process is asked to end.
    void terminated();

private:
    int mPipe[2] = {-1, -1};
    QSocketNotifier* mNotifier = nullptr;
    struct sigaction mOldInt{};
    struct sigaction mOldTerm{};
};
