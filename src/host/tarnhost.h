#pragma once

#include "cmworker.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QVector>

class QThread;

// Loads content modules and runs each worker on a thread of its own, as the
// device's platform does: the worker is constructed on that thread, so
// every object its constructor makes lives there too. Workers are
// registered with the root, which routes client requests to them.
class TarnHost : public QObject
{
    Q_OBJECT
public:
    explicit TarnHost(QObject* parent = nullptr);
    ~TarnHost() override;

    // Loads the module file and creates its worker through worker_create;
    // the module's texts follow the UI language from then on
    // (ModuleTranslator). Returns the worker, or null with the reason in
    // *error.
    CMAbstractWorker* loadModule(QString const& file, QHash<QString, QVariant> const& parameters,
                                 QString* error = nullptr);
    // Destroys every worker on its own thread and stops the threads.
    void unloadAll();

    // The module file built beside this library, for the default setup.
    static QString defaultModulePath();

private:
    struct Loaded
    {
        CMAbstractWorker* worker;
        QThread* thread;
    };
    QVector<Loaded> mLoaded;
};
