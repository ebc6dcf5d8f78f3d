#pragma once

#include <QMetaObject>
#include <QObject>

#include <utility>

// Work handed to another thread through Qt's event queue. Qt's own locks
// order the hand-over, but Debian's Qt is not built with the thread
// sanitizer, which then sees the two threads touch the same data with
// nothing between them. In a sanitizer build the work travels in a courier
// whose posting and delivery are told to the sanitizer: what the poster did
// happens before what the receiver does. Elsewhere this is
// QMetaObject::invokeMethod.

#if defined(__SANITIZE_THREAD__)
#define CM_HANDOVER_TSAN 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define CM_HANDOVER_TSAN 1
#endif
#endif

#ifdef CM_HANDOVER_TSAN

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QThread>

#include <condition_variable>
#include <functional>
#include <mutex>

extern "C" void __tsan_acquire(void* addr);
extern "C" void __tsan_release(void* addr);

// Lives on the receiver's thread from its birth, runs the work there once,
// and goes; a receiver gone meanwhile gets nothing, as with a posted event.
class CMHandOverCourier : public QObject
{
public:
    static QEvent::Type type() { return QEvent::Type(QEvent::User + 1931); }

    CMHandOverCourier(QObject* receiver, std::function<void()> work)
        : m_receiver(receiver), m_work(std::move(work))
    {
        moveToThread(receiver->thread());
    }

    // For a blocking hand-over: the poster waits here for the work's end.
    void wait()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_ended.wait(lock, [this] { return m_done; });
    }
    bool blocking = false;

    bool event(QEvent* e) override
    {
        __tsan_acquire(this); // before the event is read: the poster made it
        if (e->type() != type())
            return QObject::event(e);
        if (m_receiver)
            m_work();
        m_work = nullptr;
        if (blocking) {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_done = true;
            m_ended.notify_all();
        } else {
            delete this;
        }
        return true;
    }

private:
    QPointer<QObject> m_receiver;
    std::function<void()> m_work;
    std::mutex m_mutex;
    std::condition_variable m_ended;
    bool m_done = false;
};

template <typename F>
bool cmHandOver(QObject* receiver, F&& work, Qt::ConnectionType type = Qt::QueuedConnection)
{
    bool const here = receiver->thread() == QThread::currentThread();
    if (type == Qt::DirectConnection || (here && (type == Qt::AutoConnection || type == Qt::UniqueConnection))) {
        work();
        return true;
    }
    auto* courier = new CMHandOverCourier(receiver, std::forward<F>(work));
    // A courier that does not block deletes itself once it has run.
    bool const blocking = courier->blocking = type == Qt::BlockingQueuedConnection;
    auto* delivery = new QEvent(CMHandOverCourier::type());
    __tsan_release(courier);
    QCoreApplication::postEvent(courier, delivery);
    if (blocking) {
        courier->wait();
        delete courier;
    }
    return true;
}

#else

template <typename F>
bool cmHandOver(QObject* receiver, F&& work, Qt::ConnectionType type = Qt::QueuedConnection)
{
    return QMetaObject::invokeMethod(receiver, std::forward<F>(work), type);
}

#endif
