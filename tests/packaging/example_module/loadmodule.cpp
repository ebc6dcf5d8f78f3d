#include "cmworker.h"

#include <QCoreApplication>
#include <cstdio>
#include <dlfcn.h>

// Loads the module file given, creates its worker through worker_create and
// prints the worker's name and path prefix.
int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: load_module MODULE\n");
        return 2;
    }
    void* handle = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    using WorkerCreate = CMAbstractWorker* (*)(QObject*, QHash<QString, QVariant> const&);
    auto create = reinterpret_cast<WorkerCreate>(dlsym(handle, "worker_create"));
    if (!create) {
        std::fprintf(stderr, "%s has no worker_create\n", argv[1]);
        return 1;
    }
    auto* worker = qobject_cast<CMWorker*>(create(nullptr, {}));
    if (!worker) {
        std::fprintf(stderr, "%s created no named worker\n", argv[1]);
        return 1;
    }
    std::printf("%s %s\n", qPrintable(worker->name()), qPrintable(worker->prefixText()));
    delete worker;
    return 0;
}
