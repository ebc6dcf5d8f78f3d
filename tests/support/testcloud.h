#pragma once

#include "cloudserver.h"

#include <QFile>
#include <QTemporaryDir>
#include <memory>

// The simulated cloud on a free loopback port, serving its own catalogue,
// or, when documents are given, only those: a JSON object of paths to
// answers, with "{base}" standing for the cloud's address. Null, with the
// reason in *error, when it can't start.
inline std::unique_ptr<cloudsim::CloudServer> startTestCloud(QTemporaryDir const& dir, QByteArray const& documents,
                                                             QString* error)
{
    cloudsim::CloudOptions options;
    if (!documents.isEmpty()) {
        QFile file(dir.filePath(QStringLiteral("test.json")));
        if (!file.open(QIODevice::WriteOnly) || file.write(documents) != documents.size()) {
            *error = QStringLiteral("can't write %1").arg(file.fileName());
            return nullptr;
        }
        options.dataDirectory = dir.path();
    }
    auto cloud = std::make_unique<cloudsim::CloudServer>(options);
    if (!cloud->start()) {
        *error = cloud->errorString();
        return nullptr;
    }
    return cloud;
}
