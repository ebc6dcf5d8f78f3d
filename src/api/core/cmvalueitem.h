#pragma once

#include "cmpath.h"
#include "tarnvalue.h"

#include <QObject>

// Watches a platform value. A new watcher gets the value current at its
// creation through changed(), from its own thread's event loop so that its
// creator can connect first, and then every change in order; the old value
// of the first delivery is empty.
class CMValueItem : public QObject
{
    Q_OBJECT
public:
    CMValueItem(QObject* parent, CMPath const& path);
    CMPath const& path() const { return mPath; }

signals:
    void changed(TarnValue const& newValue, TarnValue const& oldValue);

private:
    CMPath mPath;
};
