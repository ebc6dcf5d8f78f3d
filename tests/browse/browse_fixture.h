#pragma once

#include "cmroot.h"
#include "logcapture.h"
#include "patience.h"
#include "platformvalues.h"
#include "tarnclient.h"
#include "tarnconstants.h"
#include "tarnhost.h"
#include "testcloud.h"
#include "testprograms.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

// The module loaded through worker_create into the host, its worker on its
// own thread, requests from the test's thread, real HTTP to the simulated
// cloud, which serves either its own catalogue or documents of the test.
class Browse : public ::testing::Test
{
protected:
    // Documents by path, with "{base}" for the cloud's own address; empty
    // for the built-in catalogue.
    virtual QByteArray documents() const { return {}; }
    virtual int pageSize() const { return 25; }

    void SetUp() override
    {
        QString error;
        cloud = startTestCloud(dataDir, documents(), &error);
        ASSERT_TRUE(cloud) << error.toStdString();

        PlatformValues values;
        values.baseUrl = cloud->baseUrl();
        values.secret = cloud->secret();
        values.pageSize = pageSize();
        values.apply();
        // The device has logged in to the services that log in on their own page.
        QString const device = QString(values.mac).remove(QLatin1Char(':'));
        for (char const* service : {"tidal", "amazon"})
            cloud->logIn(device, QString::fromLatin1(service), QStringLiteral("me@example.com"));
        worker = qobject_cast<CMWorker*>(host.loadModule(QStringLiteral(TARN_MODULE_FILE), {}, &error));
        ASSERT_NE(worker, nullptr) << error.toStdString();
    }

    void TearDown() override { host.unloadAll(); }

    CMPath at(QString const& cloudPath) const { return worker->addPrefix(cloud->baseUrl() + cloudPath); }

    TarnRowsRoles rows(CMPath const& path, int from, int to, QStringList const& roles = defaultRoles())
    {
        auto reply = TarnClient::rows(path, from, to, roles);
        EXPECT_TRUE(TarnClient::wait(reply, kPatienceMs)) << path.toEncoded().toStdString();
        lastError = reply.error();
        return reply.value();
    }

    CMError rowsError(CMPath const& path, int from, int to)
    {
        rows(path, from, to);
        return lastError;
    }

    QStringList paths() const
    {
        QStringList out;
        // Only requests that carried a token: the first one of a fresh
        // worker goes out without, to be refused and sent again.
        for (auto const& r : cloud->requestLog())
            if (!r.header(QStringLiteral("Authorization")).isEmpty())
                out << r.path + (r.query.isEmpty() ? QString() : QLatin1Char('?') + r.query);
        return out;
    }

    static QStringList defaultRoles()
    {
        return {TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Path(), TarnRoles::Icon(), TarnRoles::Id()};
    }

    static QString text(QVariant const& v)
    {
        return v.userType() == qMetaTypeId<TrString>() ? v.value<TrString>().toString() : v.toString();
    }

    QTemporaryDir dataDir;
    std::unique_ptr<cloudsim::CloudServer> cloud;
    TarnHost host;
    CMWorker* worker = nullptr;
    CMError lastError;
};
