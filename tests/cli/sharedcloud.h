#pragma once

#include "hostprocess.h"
#include "testcloud.h"

#include <QJsonObject>
#include <gtest/gtest.h>

// Runs of tarn-host against one simulated cloud in the test's own process,
// so that runs see the same addresses and the test reads the cloud's log
// and sets its faults.
class SharedCloud : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        cloud = startTestCloud(dataDir, {}, &error);
        ASSERT_TRUE(cloud) << error.toStdString();
    }

    HostRun host(QStringList const& arguments, QByteArray const& input = QByteArray()) const
    {
        return runHost(QStringList{"--cloud", cloud->baseUrl(), "--secret", cloud->secret()} + arguments, input);
    }

    // Logs the host's device in to a service, as its login would.
    void logIn(QString const& service, QString const& email) const { cloud->logIn(kDevice, service, email); }

    // The queries of the requests to one cloud path that carried a token,
    // in order; the device's first request goes out without one.
    QStringList queriesTo(QString const& path) const
    {
        QStringList queries;
        for (auto const& r : cloud->requestsTo(path)) {
            if (!r.header(QStringLiteral("Authorization")).isEmpty())
                queries << r.query;
        }
        return queries;
    }

    // The cloud knows the host's device by its MAC address without colons.
    static constexpr char const* kDevice = "001122334455";

    QTemporaryDir dataDir;
    std::unique_ptr<cloudsim::CloudServer> cloud;
};

// The dialog a listing of the host's JSON output carries.
inline QJsonObject dialogOf(QJsonObject const& listing)
{
    return listing.value("dialog").toObject();
}

// The name of the error a line of the host's JSON output reports.
inline QString errorName(QJsonObject const& object)
{
    return object.value("error").toObject().value("name").toString();
}
