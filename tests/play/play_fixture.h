#pragma once

#include "../module/workerthread.h"
#include "testcloud.h"
#include "cmglobal.h"
#include "logcapture.h"
#include "mimetypes.h"
#include "patience.h"
#include "platformvalues.h"
#include "simulatedstreamer.h"
#include "tarnclient.h"
#include "tarnconstants.h"

#include <atomic>
#include <functional>
#include <QTemporaryDir>
#include <gtest/gtest.h>

// Looks at what the worker keeps for the player, which no client can see.
class CMAirableWorkerProbe
{
public:
    explicit CMAirableWorkerProbe(WorkerThread* t) : t(t) {}

    QList<CMAirableWorker::EventRecord> eventRecords()
    {
        QList<CMAirableWorker::EventRecord> out;
        t->run([&] { out = t->worker()->m_eventRecords; });
        return out;
    }
    int pathsToPrepare()
    {
        int n = 0;
        t->run([&] { n = t->worker()->m_playlistPathsToPrepare.size(); });
        return n;
    }
    bool notified(CMPath const& path)
    {
        bool on = false;
        t->run([&] { on = t->worker()->m_notifiedPaths.contains(path); });
        return on;
    }
    AirableProgramPlayLogic* programPlayLogic()
    {
        AirableProgramPlayLogic* logic = nullptr;
        t->run([&] { logic = t->worker()->m_programPlayLogic; });
        return logic;
    }
    template <typename F>
    void onWorker(F f)
    {
        t->run([this, f] { f(t->worker()); });
    }

private:
    WorkerThread* t;
};

// A player that only counts what it is told, for checks of who tells it.
class CountingPlayer : public PlayLogicInterface
{
public:
    CountingPlayer() { setPlayerInstance(this); }
    ~CountingPlayer() override { setPlayerInstance(nullptr); }

    TarnPlayLogicData data() const override { return TarnPlayLogicData().setTrackRoles(track); }
    CMReply<QVariant> pause() override { return count(&pauses); }
    CMReply<QVariant> next() override { return count(&nexts); }
    CMReply<QVariant> stop(int) override { return count(&stops); }

    TarnRoles track;
    std::atomic<int> pauses{0};
    std::atomic<int> nexts{0};
    std::atomic<int> stops{0};

private:
    static CMReply<QVariant> count(std::atomic<int>* n)
    {
        ++*n;
        CMReply<QVariant> reply;
        reply.setValue(QVariant());
        return reply;
    }
};

// A translatable text the module raises, the signature of the function that
// must raise it (as the compiler writes one; translators key on it), and a
// request that makes it raise the text.
struct RaisedText
{
    char const* text;
    char const* signature;
    std::function<CMError()> raise;

    // Raises the text and shows it as a person is shown it, which is how
    // the test program tells the translation catalogue of it.
    TrCharData shown() const
    {
        TrString const message = raise().message();
        message.toString();
        return message.data();
    }
};

// The module's worker on its own thread, linked into the test so that the
// probe reaches it, with the simulated cloud on loopback serving either its
// own catalogue or the test's documents.
class Play : public ::testing::Test
{
protected:
    virtual QByteArray documents() const { return {}; }
    virtual int bitrate() const { return TarnAirableStreamBitrate::Medium; }

    void SetUp() override
    {
        QString error;
        cloud = startTestCloud(dataDir, documents(), &error);
        ASSERT_TRUE(cloud) << error.toStdString();

        PlatformValues values;
        values.baseUrl = cloud->baseUrl();
        values.secret = cloud->secret();
        values.bitrate = bitrate();
        values.apply();
        // The device has logged in to the services that log in on their own page.
        QString const device = QString(values.mac).remove(QLatin1Char(':'));
        for (char const* service : {"tidal", "amazon"})
            cloud->logIn(device, QString::fromLatin1(service), QStringLiteral("me@example.com"));
        thread = std::make_unique<WorkerThread>();
        thread->run([] {}); // the watchers' first values arrive
        worker = thread->worker();
        probe = std::make_unique<CMAirableWorkerProbe>(thread.get());
    }

    void TearDown() override
    {
        probe.reset();
        thread.reset();
    }

    CMPath at(QString const& cloudPath) const { return worker->addPrefix(cloud->baseUrl() + cloudPath); }

    // The rows of a listing as role hashes, as a player's client reads them.
    QList<TarnRoles> rowRoles(CMPath const& listing, int from, int to)
    {
        QStringList const roles{TarnRoles::Title(), TarnRoles::Path(), TarnRoles::Type(), TarnRoles::MediaData()};
        auto reply = TarnClient::rows(listing, from, to, roles);
        EXPECT_TRUE(TarnClient::wait(reply, kPatienceMs));
        EXPECT_FALSE(reply.hasError()) << reply.error().messageText().toStdString();
        QList<TarnRoles> out;
        for (auto const& row : reply.value().rows())
            out << TarnRoles(CMGlobal::rolesValuesToHash(roles, row.toList()));
        return out;
    }

    // A set on a path, waited for.
    CMReply<QVariant> set(CMPath const& path, QVariant const& value, QString const& role = TarnRoles::Value())
    {
        auto reply = TarnClient::setData(path, role, value);
        EXPECT_TRUE(TarnClient::wait(reply, kPatienceMs)) << path.toEncoded().toStdString();
        return reply;
    }

    // Cloud paths asked with a token, in order.
    QStringList paths() const
    {
        QStringList out;
        for (auto const& r : cloud->requestLog())
            if (!r.header(QStringLiteral("Authorization")).isEmpty())
                out << r.path + (r.query.isEmpty() ? QString() : QLatin1Char('?') + r.query);
        return out;
    }

    // Serves events until the condition holds or ms pass.
    template <typename F>
    bool waitFor(F condition, int ms = kPatienceMs)
    {
        CMReply<QVariant> never;
        for (int waited = 0; waited < ms && !condition(); waited += 20)
            TarnClient::wait(never, 20);
        return condition();
    }

    QTemporaryDir dataDir;
    std::unique_ptr<cloudsim::CloudServer> cloud;
    std::unique_ptr<WorkerThread> thread;
    std::unique_ptr<CMAirableWorkerProbe> probe;
    CMAirableWorker* worker = nullptr;
};
