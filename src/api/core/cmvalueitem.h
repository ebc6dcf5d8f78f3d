#pragma once

#include "cmpath.h"
#include "tarnvalue.h"

#include <QObject>

// Watches a platform value. A new watcher gets the current value through
// changed() from its own thread's event loop, after its creator has had the
// chance to connect, and then every change; the old value of the first
// delivery is empty.
class CMValueItem : public QObject
{
    Q_OBJECT
public:
    CMValueItem(QObject* parent, CMPath const& path);
    CMPath const& path() const { return mPath; }

signals:
    void changed(TarnValue const& newValue, TarnValue const& oldValue);

private:
    void deliverCurrent();

    CMPath mPath;
};
