#pragma once

#include "cmpath.h"

#include <QHash>
#include <mutex>
#include <QObject>

// Who watches which rows path. Clients add and remove watchers from any
// thread; when the last watcher of a path leaves, rowsPathRemoved is emitted
// once, so the owner of the path can drop what it holds for it.
class CMSubscribe : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    static QString const& RowsChangeClose();
    static QString const& RowsChangeReset();

    void addWatcher(CMPath const& path);
    void removeWatcher(CMPath const& path);
    int watcherCount(CMPath const& path) const;

    // Tells the watchers of path that its rows changed.
    void changed(CMPath const& path, QString const& type, int from, int to);

signals:
    void rowsPathRemoved(CMPath const& path);
    void rowsChanged(CMPath const& path, QString const& type, int from, int to);

private:
    mutable std::mutex mMutex;
    QHash<CMPath, int> mWatchers;
};
