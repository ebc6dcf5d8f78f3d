#include "childprocess.h"
#include "patience.h"
#include "platformvalues.h"
#include "tarnclient.h"
#include "tarnconstants.h"
#include "tarnhost.h"
#include "testprograms.h"

#include <QThread>
#include <gtest/gtest.h>

TEST(ModuleEntry, exportsOnlyWorkerCreate)
{
    // nm belongs to the build machine: it runs as it is, never emulated.
    ChildProcess nm({QStringLiteral(TARN_NM),
                     {QStringLiteral("-D"), QStringLiteral("--defined-only"), QStringLiteral(TARN_MODULE_FILE)}});
    ASSERT_TRUE(nm.waitForFinished(kPatienceMs));
    QStringList names;
    for (auto const& line : QString::fromLocal8Bit(nm.readAllStandardOutput()).split(QLatin1Char('\n'))) {
        QStringList const parts = line.simplified().split(QLatin1Char(' '));
        if (parts.size() == 3)
            names << parts.at(2);
    }
    EXPECT_EQ(names, QStringList{QStringLiteral("worker_create")});
}

TEST(ModuleEntry, hostLoadsTheModuleAndRoutesRequestsToItsWorker)
{
    PlatformValues().apply();
    TarnHost host;
    QString error;
    auto* worker = qobject_cast<CMWorker*>(host.loadModule(QStringLiteral(TARN_MODULE_FILE), {}, &error));
    ASSERT_NE(worker, nullptr) << error.toStdString();
    EXPECT_EQ(worker->name(), QStringLiteral("Airable"));
    EXPECT_NE(worker->thread(), QThread::currentThread());

    auto probe = TarnClient::data(worker->addPrefix(QStringLiteral("x")), {TarnRoles::Permission()});
    EXPECT_TRUE(probe.isFinished()); // answered on this thread
    EXPECT_EQ(probe.value().value(0).toString(), TarnPermission::Default_());

    // A form that does not exist: handed to the worker's tree, which says so.
    auto missing = TarnClient::rows(worker->addPrefix(TarnAirablePrefixForm() + QStringLiteral("1")), 0, 9,
                                    {TarnRoles::Title()});
    ASSERT_TRUE(TarnClient::wait(missing, kPatienceMs));
    EXPECT_EQ(missing.error().name(), QStringLiteral("notFound"));

    EXPECT_EQ(host.loadModule(QStringLiteral("/nonexistent/module.so"), {}, &error), nullptr);
    EXPECT_TRUE(error.contains(QStringLiteral("/nonexistent/module.so")));
}
