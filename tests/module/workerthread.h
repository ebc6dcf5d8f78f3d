#pragma once

#include "cb_airable.h"
#include "cmroot.h"

#include <QThread>

// Builds a worker on a thread of its own, as the host does, but from the
// module's classes linked into the test, so tests can look inside it.
class WorkerThread
{
public:
    explicit WorkerThread(QHash<QString, QVariant> const& parameters = {})
    {
        mThread.start();
        auto* anchor = new QObject;
        anchor->moveToThread(&mThread);
        QMetaObject::invokeMethod(anchor, [&] { mWorker = new CMAirableWorker(parameters); },
                                  Qt::BlockingQueuedConnection);
        anchor->deleteLater();
        CMRootWorker::instance()->addWorker(mWorker);
    }
    ~WorkerThread()
    {
        CMRootWorker::instance()->removeWorker(mWorker);
        QMetaObject::invokeMethod(mWorker, [w = mWorker] { delete w; }, Qt::BlockingQueuedConnection);
        mThread.quit();
        mThread.wait();
    }

    CMAirableWorker* worker() const { return mWorker; }
    QThread* thread() { return &mThread; }

    // Runs f on the worker's thread after everything queued there so far.
    template <typename F>
    void run(F f)
    {
        QMetaObject::invokeMethod(mWorker, f, Qt::BlockingQueuedConnection);
    }

private:
    QThread mThread;
    CMAirableWorker* mWorker = nullptr;
};
