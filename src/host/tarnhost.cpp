#include "tarnhost.h"

#include "cmhandover.h"
#include "cmroot.h"
#include "moduletranslator.h"
#include "tarnconstants.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QThread>
#include <dlfcn.h>

namespace {
using WorkerCreate = CMAbstractWorker* (*)(QObject*, QHash<QString, QVariant> const&);
}

TarnHost::TarnHost(QObject* parent) : QObject(parent)
{
    CMRootWorker::instance();
}

TarnHost::~TarnHost()
{
    unloadAll();
}

QString TarnHost::defaultModulePath()
{
    Dl_info info{};
    dladdr(reinterpret_cast<void*>(&TarnHost::defaultModulePath), &info);
    QString const dir = info.dli_fname ? QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath()
                                       : QCoreApplication::applicationDirPath();
    QString const name = QStringLiteral("libtarn_cb_airable.so");
    // Built, the module lies beside this library; installed, in the
    // platform's module directory below it, wherever the tree was unpacked.
    QString const candidates[] = {
        QDir(dir).filePath(name),
        QDir(dir).filePath(QStringLiteral(TARN_MODULE_LIBDIR_SUBDIR "/") + name),
        QDir(QStringLiteral(TARN_MODULE_INSTALL_DIR)).filePath(name),
    };
    for (QString const& file : candidates) {
        if (QFileInfo::exists(file))
            return file;
    }
    return candidates[2];
}

CMAbstractWorker* TarnHost::loadModule(QString const& file, QHash<QString, QVariant> const& parameters,
                                       QString* error)
{
    // Modules stay loaded for the life of the process: their objects are
    // not all torn down with the worker.
    void* handle = dlopen(QFile::encodeName(file).constData(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        if (error)
            *error = QStringLiteral("Cannot load module %1: %2").arg(file, QString::fromLocal8Bit(dlerror()));
        return nullptr;
    }
    auto create = reinterpret_cast<WorkerCreate>(dlsym(handle, "worker_create"));
    if (!create) {
        if (error)
            *error = QStringLiteral("Module %1 has no worker_create").arg(file);
        return nullptr;
    }

    auto* thread = new QThread;
    thread->setObjectName(QFileInfo(file).baseName());
    thread->start();
    auto* anchor = new QObject;
    anchor->moveToThread(thread);
    CMAbstractWorker* worker = nullptr;
    cmHandOver(anchor, [&] { worker = create(nullptr, parameters); }, Qt::BlockingQueuedConnection);
    anchor->deleteLater();
    if (!worker) {
        thread->quit();
        thread->wait();
        delete thread;
        if (error)
            *error = QStringLiteral("Module %1 created no worker").arg(file);
        return nullptr;
    }
    auto* root = CMRootWorker::instance();
    root->addWorker(worker);
    // The platform knows which of its own paths each module serves.
    if (auto* named = qobject_cast<CMWorker*>(worker); named && named->name() == QLatin1String("Airable")) {
        for (CMPath const& path : {TarnAirableBrowseServicePrefix(), TarnAirableOAuthPath(),
                                   TarnAirableProgramPlayLogicPath(), TarnAirablePreparePlaylistItemsPath()})
            root->addRoute(path, worker);
    }
    mLoaded.append({worker, thread});
    new ModuleTranslator(file, this);
    return worker;
}

void TarnHost::unloadAll()
{
    for (auto const& l : mLoaded) {
        CMRootWorker::instance()->removeWorker(l.worker);
        cmHandOver(l.worker, [w = l.worker] { delete w; }, Qt::BlockingQueuedConnection);
        l.thread->quit();
        l.thread->wait();
        delete l.thread;
    }
    mLoaded.clear();
}
