#pragma once

#include <QObject>
#include <csignal>

class QSocketNotifier;

// Turns SIGINT and SIGTERM into the signal interrupted(), delivered by the
// event loop, for as long as the object lives; the earlier handlers come
// back with its end. One at a time.
class InterruptListener : public QObject
{
    Q_OBJECT
public:
    explicit InterruptListener(QObject* parent = nullptr);
    ~InterruptListener() override;

signals:
    void interrupted();

private:
    int mPipe[2] = {-1, -1};
    QSocketNotifier* mNotifier = nullptr;
    struct sigaction mOldInt{};
    struct sigaction mOldTerm{};
};
