#pragma once

#include "cmerror.h"

#include <QEnableSharedFromThis>
#include <QMetaType>
#include <QObject>
#include <QPointer>
#include <QSharedPointer>
#include <QVector>
#include <condition_variable>
#include <functional>
#include <mutex>

class CMVoidReply;

// The shared state of an asynchronous answer. It finishes once, with a value
// or an error; a later setValue or setError is dropped, so the
// first result is the one every watcher and waiter sees.
//
// Hooks run when the reply finishes, or at once when added to a finished
// reply. With a context object a hook runs on the object's thread (directly
// when the finishing thread is that thread, else queued) and never once the
// object is gone. Without one, a Direct or Auto hook runs on the finishing
// thread and a Queued hook is posted to that thread's event loop.
class CMReplyAbstractData : public QEnableSharedFromThis<CMReplyAbstractData>
{
public:
    using Hook = std::function<void(CMVoidReply const&)>;

    CMReplyAbstractData() = default;
    CMReplyAbstractData(CMReplyAbstractData const&) = delete;
    CMReplyAbstractData& operator=(CMReplyAbstractData const&) = delete;
    virtual ~CMReplyAbstractData() = default;

    void setError(CMError const& error);
    CMError error() const;
    bool hasError() const;
    bool isFinished() const;
    bool isCancelled() const;
    // Abandons the reply: it counts as finished, no hook runs, results are dropped.
    void cancel();
    // Blocks up to ms milliseconds; true when the reply finished meanwhile.
    bool waitForFinished(unsigned long ms) const;

    void addHook(QObject* context, Hook hook, Qt::ConnectionType type);

protected:
    // Stores the result under the lock when the reply is still open, then
    // runs the hooks outside it. False when the reply had finished before.
    bool finish(std::function<void()> const& store);
    // Standard locks, so that thread checkers see every hand-over.
    mutable std::mutex mMutex;

private:
    struct Entry
    {
        QPointer<QObject> context;
        bool hasContext = false;
        Hook hook;
        Qt::ConnectionType type = Qt::AutoConnection;
    };
    static void run(Entry const& entry, CMVoidReply const& reply);

    mutable std::condition_variable mFinishedCondition;
    bool mFinished = false;
    bool mCancelled = false;
    CMError mError;
    QVector<Entry> mHooks;
};

template <typename T>
class CMReplyData : public CMReplyAbstractData
{
public:
    void setValue(T const& value)
    {
        finish([&] { mValue = value; });
    }
    T value() const
    {
        std::lock_guard<std::mutex> lock(mMutex);
        return mValue;
    }

private:
    T mValue{};
};

// Receives finished replies; a watcher that is also a QObject is treated as
// the context of its hook.
class CMReplyWatcher
{
public:
    virtual ~CMReplyWatcher() = default;
    virtual void replyFinished(CMVoidReply const& reply) = 0;
};

// An untyped handle on a reply. A default handle is null.
class CMVoidReply
{
public:
    CMVoidReply() = default;
    explicit CMVoidReply(CMReplyAbstractData* data) : d(data) {}
    explicit CMVoidReply(QSharedPointer<CMReplyAbstractData> data) : d(std::move(data)) {}

    bool operator!() const { return d.isNull(); }
    bool isNull() const { return d.isNull(); }
    bool operator==(CMVoidReply const& o) const { return d == o.d; }

    void setError(CMError const& error) const { d->setError(error); }
    CMError error() const { return d ? d->error() : CMError(); }
    bool hasError() const { return d && d->hasError(); }
    bool isFinished() const { return d && d->isFinished(); }
    void cancel() const { d->cancel(); }
    bool waitForFinished(unsigned long ms) const { return d->waitForFinished(ms); }

    void addWatcher(CMReplyWatcher* watcher) const;
    void addWatcher(QObject* context, std::function<void(CMVoidReply const&)> hook,
                    Qt::ConnectionType type = Qt::AutoConnection) const
    {
        d->addHook(context, std::move(hook), type);
    }
    CMVoidReply const& onError(QObject* context, std::function<void(CMError const&)> hook,
                               Qt::ConnectionType type = Qt::AutoConnection) const;
    CMVoidReply const& onError(std::function<void(CMError const&)> hook,
                               Qt::ConnectionType type = Qt::AutoConnection) const
    {
        return onError(nullptr, std::move(hook), type);
    }

    CMReplyAbstractData* data() const { return d.data(); }
    QSharedPointer<CMReplyAbstractData> const& sharedData() const { return d; }

protected:
    QSharedPointer<CMReplyAbstractData> d;
};

// A typed handle. A default-constructed CMReply is a fresh, open reply.
template <typename T>
class CMReply : public CMVoidReply
{
public:
    CMReply() : CMVoidReply(QSharedPointer<CMReplyAbstractData>(new CMReplyData<T>)) {}
    explicit CMReply(CMReplyData<T>* data) : CMVoidReply(data) {}
    // Typed view of an untyped handle; null when the reply holds another type.
    explicit CMReply(CMVoidReply const& other)
        : CMVoidReply(dynamic_cast<CMReplyData<T>*>(other.data()) ? other.sharedData()
                                                                    : QSharedPointer<CMReplyAbstractData>())
    {
    }

    CMReplyData<T>* operator->() const { return static_cast<CMReplyData<T>*>(d.data()); }
    void setValue(T const& value) const { (*this)->setValue(value); }
    T value() const { return (*this)->value(); }

    CMReply const& onSuccess(QObject* context, std::function<void(T const&)> hook,
                             Qt::ConnectionType type = Qt::AutoConnection) const
    {
        addWatcher(context, [hook = std::move(hook)](CMVoidReply const& r) {
            if (!r.hasError())
                hook(CMReply<T>(r).value());
        }, type);
        return *this;
    }
    CMReply const& onSuccess(std::function<void(T const&)> hook,
                             Qt::ConnectionType type = Qt::AutoConnection) const
    {
        return onSuccess(nullptr, std::move(hook), type);
    }
    CMReply const& onFinished(QObject* context, std::function<void(CMReply<T> const&)> hook,
                              Qt::ConnectionType type = Qt::AutoConnection) const
    {
        addWatcher(context, [hook = std::move(hook)](CMVoidReply const& r) { hook(CMReply<T>(r)); }, type);
        return *this;
    }
    CMReply const& onFinished(std::function<void(CMReply<T> const&)> hook,
                              Qt::ConnectionType type = Qt::AutoConnection) const
    {
        return onFinished(nullptr, std::move(hook), type);
    }
    CMReply const& onError(QObject* context, std::function<void(CMError const&)> hook,
                           Qt::ConnectionType type = Qt::AutoConnection) const
    {
        CMVoidReply::onError(context, std::move(hook), type);
        return *this;
    }
    CMReply const& onError(std::function<void(CMError const&)> hook,
                           Qt::ConnectionType type = Qt::AutoConnection) const
    {
        return onError(nullptr, std::move(hook), type);
    }
};

// A watcher that turns a finished reply into a Qt signal.
class CMReplyWatcherObject : public QObject, public CMReplyWatcher
{
    Q_OBJECT
public:
    using QObject::QObject;
    void replyFinished(CMVoidReply const& reply) override { emit finishedSignal(reply); }

signals:
    void finishedSignal(CMVoidReply const& reply);
};

Q_DECLARE_METATYPE(CMVoidReply)
