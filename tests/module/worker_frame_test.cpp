#include "workerthread.h"

#include "cmnode.h"
#include "patience.h"
#include "platformvalues.h"
#include "tarnconstants.h"
#include "tarnurl.h"

#include <QSharedPointer>
#include <atomic>
#include <gtest/gtest.h>

// Looks at the worker's dialog caches, which no client can see directly.
class CMAirableWorkerProbe
{
public:
    explicit CMAirableWorkerProbe(CMAirableWorker* w) : w(w) {}
    void addForm(int n) { w->m_forms.insert(n, new QSharedPointer<AirableForm>()); }
    void addMessage(int n) { w->m_messages.insert(n, new QSharedPointer<AirableMessage>()); }
    void notify(CMPath const& p) { w->m_notifiedPaths.insert(p); }
    bool notified(CMPath const& p) const { return w->m_notifiedPaths.contains(p); }
    bool hasForm(int n) const { return w->m_forms.contains(n); }
    QSet<int> freeForms() const { return w->m_freeFormIds; }
    QSet<int> freeMessages() const { return w->m_freeMessageIds; }
    void addPagination(CMPath const& p) { w->m_paginations.insert(p, AirablePagination()); }
    bool hasPagination(CMPath const& p) const { return w->m_paginations.contains(p); }

private:
    CMAirableWorker* w;
};

class WorkerFrame : public ::testing::Test
{
protected:
    void SetUp() override
    {
        PlatformValues values;
        values.baseUrl = QStringLiteral("http://127.0.0.1:9/");
        values.secret = QStringLiteral("s3cret");
        values.pageSize = 30;
        values.modelName = QStringLiteral("Model X");
        values.version = QStringLiteral("2.1");
        values.language = QStringLiteral("fr_FR");
        values.mac = QStringLiteral("AA:BB:CC:DD:EE:FF");
        values.bitrate = 192000;
        values.apply();
        worker = std::make_unique<WorkerThread>();
        worker->run([] {}); // the watchers' first values arrive
    }
    CMAirableWorker* w() const { return worker->worker(); }

    std::unique_ptr<WorkerThread> worker;
};

TEST_F(WorkerFrame, configurationComesFromThePlatformValuesAndTheirWatchers)
{
    auto config = w()->config();
    EXPECT_EQ(config->baseUrl(), QStringLiteral("http://127.0.0.1:9/"));
    EXPECT_EQ(config->secret(), QStringLiteral("s3cret"));
    EXPECT_EQ(config->pageSize(), 30);
    EXPECT_EQ(config->deviceName(), QStringLiteral("Model X"));
    EXPECT_EQ(config->version(), QStringLiteral("2.1"));
    EXPECT_EQ(config->locale(), QStringLiteral("fr-FR"));
    EXPECT_EQ(config->deviceId(), QStringLiteral("AABBCCDDEEFF"));
    EXPECT_EQ(int(config->bitrate()), 192000);
}

TEST_F(WorkerFrame, languageAndBitrateChangesReachTheConfiguration)
{
    auto* root = CMRootWorker::instance();
    root->putValue(TarnUILanguagePath(), TarnValue().setString_(QStringLiteral("de_DE")));
    root->putValue(TarnAirableStreamBitratePath(),
                   TarnValue().setAirableStreamBitrate(TarnAirableStreamBitrate::Enum(96000)));
    root->putValue(TarnSystemPrimaryMacAddressPath(), TarnValue().setString_(QStringLiteral("01:02:03:04:05:06")));
    worker->run([] {});
    EXPECT_EQ(w()->config()->locale(), QStringLiteral("de-DE"));
    EXPECT_EQ(int(w()->config()->bitrate()), 96000);
    EXPECT_EQ(w()->config()->deviceId(), QStringLiteral("010203040506"));
}

TEST_F(WorkerFrame, probeAndContextTitlesAreAnsweredOnTheCallersThread)
{
    QThread* const caller = QThread::currentThread();

    // A single Permission role is a probe, whatever the path.
    CMGetDataRequest probe(w()->addPrefix(TarnAirablePrefixForm() + QStringLiteral("7")),
                           {TarnRoles::Permission()});
    QThread* answeredOn = nullptr;
    probe.reply().onSuccess([&](QList<QVariant> const&) { answeredOn = QThread::currentThread(); });
    w()->getDataRequest(probe);
    ASSERT_TRUE(probe.reply().isFinished());
    EXPECT_EQ(answeredOn, caller);
    EXPECT_EQ(probe.reply().value(), QList<QVariant>{TarnPermission::Default_()});

    CMGetDataRequest context(w()->addPrefix(TarnAirablePrefixContext() + QStringLiteral(":AAAA")),
                             {TarnRoles::Title(), TarnRoles::Type(), TarnRoles::ContainerType(), TarnRoles::Icon()});
    w()->getDataRequest(context);
    ASSERT_TRUE(context.reply().isFinished());
    QList<QVariant> const v = context.reply().value();
    ASSERT_EQ(v.size(), 4);
    TrString const title = v.at(0).value<TrString>();
    EXPECT_EQ(title.data().source, QStringLiteral("Actions"));
    EXPECT_EQ(title.data().context, QStringLiteral("CMAirableWorker::getDataRequest(const CMGetDataRequest&)"));
    EXPECT_EQ(title.data().count, -1);
    EXPECT_EQ(v.at(1).toString(), TarnRolesType::Container());
    EXPECT_EQ(v.at(2).toString(), TarnRolesContainerType::Context());
    EXPECT_FALSE(v.at(3).isValid());

    for (auto const& prefix : {TarnAirablePrefixPlayContext(), TarnAirablePrefixContentContext(),
                               TarnAirablePrefixAction()}) {
        CMGetDataRequest r(w()->addPrefix(prefix + QStringLiteral(":http://x")), {TarnRoles::Type()});
        w()->getDataRequest(r);
        EXPECT_TRUE(r.reply().isFinished()) << prefix.toStdString();
    }
}

TEST_F(WorkerFrame, twoRolesWithPermissionIsNotAProbe)
{
    CMGetDataRequest r(w()->addPrefix(TarnAirablePrefixForm() + QStringLiteral("7")),
                       {TarnRoles::Permission(), TarnRoles::Title()});
    w()->getDataRequest(r);
    // Handed to the node tree on the worker's thread, which holds no form 7.
    ASSERT_TRUE(r.reply().waitForFinished(kPatienceMs));
    EXPECT_EQ(r.reply().error().name(), QStringLiteral("notFound"));
}

TEST_F(WorkerFrame, rowsAndSetDataRequestsAreHandedToTheWorkersThread)
{
    CMPath const form = w()->addPrefix(TarnAirablePrefixForm() + QStringLiteral("1"));
    worker->run([&] { CMListRowsNode::create(w()->nodes(), form); });
    CMGetRowsRequest rows(form, 0, 5, -1, {TarnRoles::Title()});
    std::atomic<QThread*> answeredOn{nullptr};
    rows.reply().onFinished([&](CMReply<TarnRowsRoles> const&) { answeredOn = QThread::currentThread(); },
                            Qt::DirectConnection);
    w()->getRowsRequest(rows);
    worker->run([] {}); // the hook runs right after the answer, on the same thread
    ASSERT_TRUE(rows.reply().isFinished());
    EXPECT_EQ(answeredOn.load(), worker->thread());
    EXPECT_FALSE(rows.reply().hasError());

    CMSetDataRequest set(form, TarnRoles::Value(), 1);
    w()->setDataRequest(set);
    ASSERT_TRUE(set.reply().waitForFinished(kPatienceMs));
    EXPECT_TRUE(set.reply().hasError());
}

TEST_F(WorkerFrame, removedPathsReleaseDialogsAndPaginations)
{
    CMAirableWorkerProbe probe(w());
    CMPath const formRoot = w()->addPrefix(TarnAirablePrefixForm() + QStringLiteral("3"));
    CMPath const oddForm = w()->addPrefix(TarnAirablePrefixForm() + QStringLiteral("3:user"));
    CMPath const unknownForm = w()->addPrefix(TarnAirablePrefixForm() + QStringLiteral("9"));
    CMPath const message = w()->addPrefix(TarnAirablePrefixMessage() + QStringLiteral("4"));
    CMPath const listing = w()->addPrefix(QStringLiteral("http://cloud/list"));
    worker->run([&] {
        probe.addForm(3);
        probe.addMessage(4);
        probe.notify(oddForm);
        probe.addPagination(listing);
        probe.addPagination(formRoot);
    });

    worker->run([&] { w()->on_rowsPathRemoved(oddForm); });
    EXPECT_FALSE(probe.notified(oddForm));
    EXPECT_TRUE(probe.hasForm(3));
    EXPECT_TRUE(probe.freeForms().isEmpty());

    worker->run([&] { w()->on_rowsPathRemoved(unknownForm); });
    EXPECT_TRUE(probe.freeForms().isEmpty());

    worker->run([&] { w()->on_rowsPathRemoved(formRoot); });
    EXPECT_FALSE(probe.hasForm(3));
    EXPECT_EQ(probe.freeForms(), QSet<int>{3});
    EXPECT_TRUE(probe.hasPagination(formRoot)); // a form path never touches paginations

    worker->run([&] { w()->on_rowsPathRemoved(message); });
    EXPECT_EQ(probe.freeMessages(), QSet<int>{4});

    // The last watcher leaving is what brings the worker to drop a listing's pages.
    w()->connectChange(listing);
    w()->disconnectChange(listing);
    worker->run([] {});
    EXPECT_FALSE(probe.hasPagination(listing));
}
