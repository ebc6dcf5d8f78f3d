#include "cmsubscribe.h"

QString const& CMSubscribe::RowsChangeClose()
{
    static QString const s(QStringLiteral("close"));
    return s;
}

QString const& CMSubscribe::RowsChangeReset()
{
    static QString const s(QStringLiteral("reset"));
    return s;
}

void CMSubscribe::addWatcher(CMPath const& path)
{
    std::lock_guard<std::mutex> lock(mMutex);
    ++mWatchers[path];
}

void CMSubscribe::removeWatcher(CMPath const& path)
{
    {
        std::lock_guard<std::mutex> lock(mMutex);
        auto it = mWatchers.find(path);
        if (it == mWatchers.end())
            return;
        if (--it.value() > 0)
            return;
        mWatchers.erase(it);
    }
    emit rowsPathRemoved(path);
}

int CMSubscribe::watcherCount(CMPath const& path) const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mWatchers.value(path);
}

void CMSubscribe::changed(CMPath const& path, QString const& type, int from, int to)
{
    emit rowsChanged(path, type, from, to);
}
