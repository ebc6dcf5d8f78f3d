#include "cmreply.h"

#include "cmhandover.h"
#include "../tarnlog.h"

#include <QThread>
#include <QTimer>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

void CMReplyAbstractData::setError(CMError const& error)
{
    if (!finish([&] { mError = error; }))
        LOG4CPLUS_DEBUG(logger, "Reply already finished; error dropped: " << error.messageText().toStdString());
}

CMError CMReplyAbstractData::error() const
{
    std::unique_lock<std::mutex> lock(mMutex);
    return mError;
}

bool CMReplyAbstractData::hasError() const
{
    std::unique_lock<std::mutex> lock(mMutex);
    return !mError.isEmpty();
}

bool CMReplyAbstractData::isFinished() const
{
    std::unique_lock<std::mutex> lock(mMutex);
    return mFinished;
}

bool CMReplyAbstractData::isCancelled() const
{
    std::unique_lock<std::mutex> lock(mMutex);
    return mCancelled;
}

void CMReplyAbstractData::cancel()
{
    std::unique_lock<std::mutex> lock(mMutex);
    if (mFinished)
        return;
    mFinished = true;
    mCancelled = true;
    mHooks.clear();
    mFinishedCondition.notify_all();
}

bool CMReplyAbstractData::waitForFinished(unsigned long ms) const
{
    std::unique_lock<std::mutex> lock(mMutex);
    return mFinishedCondition.wait_for(lock, std::chrono::milliseconds(ms), [this] { return mFinished; });
}

bool CMReplyAbstractData::finish(std::function<void()> const& store)
{
    QVector<Entry> hooks;
    {
        std::unique_lock<std::mutex> lock(mMutex);
        // A result that arrives after cancel() is expected and dropped quietly.
        if (mFinished)
            return mCancelled;
        store();
        mFinished = true;
        hooks.swap(mHooks);
        mFinishedCondition.notify_all();
    }
    CMVoidReply const self(sharedFromThis());
    for (auto const& entry : hooks)
        run(entry, self);
    return true;
}

void CMReplyAbstractData::addHook(QObject* context, Hook hook, Qt::ConnectionType type)
{
    Entry entry{context, context != nullptr, std::move(hook), type};
    {
        std::unique_lock<std::mutex> lock(mMutex);
        if (mCancelled)
            return;
        if (!mFinished) {
            mHooks.append(std::move(entry));
            return;
        }
    }
    run(entry, CMVoidReply(sharedFromThis()));
}

void CMReplyAbstractData::run(Entry const& entry, CMVoidReply const& reply)
{
    if (!entry.hasContext) {
        if (entry.type == Qt::QueuedConnection)
            QTimer::singleShot(0, [hook = entry.hook, reply] { hook(reply); });
        else
            entry.hook(reply);
        return;
    }
    QObject* context = entry.context.data();
    if (!context)
        return;
    Qt::ConnectionType type = entry.type;
    if (type == Qt::AutoConnection || type == Qt::UniqueConnection)
        type = context->thread() == QThread::currentThread() ? Qt::DirectConnection : Qt::QueuedConnection;
    if (type == Qt::DirectConnection) {
        entry.hook(reply);
        return;
    }
    // Posted events die with their receiver, and the guard covers a
    // destruction between posting and delivery on the receiver's own thread.
    QPointer<QObject> guard(context);
    cmHandOver(context, [guard, hook = entry.hook, reply] {
        if (guard)
            hook(reply);
    }, type);
}

void CMVoidReply::addWatcher(CMReplyWatcher* watcher) const
{
    d->addHook(dynamic_cast<QObject*>(watcher), [watcher](CMVoidReply const& r) { watcher->replyFinished(r); },
               Qt::AutoConnection);
}

CMVoidReply const& CMVoidReply::onError(QObject* context, std::function<void(CMError const&)> hook,
                                        Qt::ConnectionType type) const
{
    addWatcher(context, [hook = std::move(hook)](CMVoidReply const& r) {
        if (r.hasError())
            hook(r.error());
    }, type);
    return *this;
}
