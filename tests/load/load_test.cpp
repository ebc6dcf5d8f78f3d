#include "cloudserver.h"
#include "cmglobal.h"
#include "platformvalues.h"
#include "tarnclient.h"
#include "tarnconstants.h"
#include "tarnhost.h"
#include "tarnmediadata.h"
#include "tarnrowsroles.h"
#include "tarnvalue.h"
#include "testprograms.h"

#include <QElapsedTimer>
#include <QMap>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <atomic>
#include <iostream>
#include <mutex>
#include <thread>

namespace {

// A reply still open after this is one that never ends; the thread
// sanitizer makes everything several times slower.
constexpr int kPatienceMs = 60000;

QStringList const& rowRoles()
{
    static QStringList const roles{TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Path(), TarnRoles::Id(),
                                   TarnRoles::MediaData()};
    return roles;
}

QList<TarnRoles> rowsOf(TarnRowsRoles const& page)
{
    QList<TarnRoles> rows;
    for (QVariant const& v : page.rows())
        rows << TarnRoles(CMGlobal::rolesValuesToHash(rowRoles(), v.toList()));
    return rows;
}

// What the clients share: the places found before they start, read only.
struct Places
{
    CMPath root;
    QList<CMPath> listings;
    QList<int> counts; // of the listings' rows
    QList<TarnRoles> playable;
    CMPath search;
};

// One user interface on a thread of its own: browses, pages, reads values,
// plays and types into a search, at random, until its time is up.
// Plain threads, not QThread: their start and join are what the thread
// sanitizer sees, so the counts read after the join are no race to it.
class Client
{
public:
    Client(Places const& places, int seed, int ms) : m_places(places), m_random(seed), m_ms(ms) {}
    void start() { m_thread = std::thread([this] { run(); }); }
    void join() { m_thread.join(); }

    int requests = 0;
    int failures = 0;
    QStringList unfinished;
    QMap<QString, int> errors;

private:
    void run()
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < m_ms) {
            switch (m_random.bounded(5)) {
            case 0: browse(m_places.root, 0); break;
            case 1: page(); break;
            case 2: readValues(); break;
            case 3: play(); break;
            default: search(); break;
            }
        }
    }

    template <typename T>
    T pick(QList<T> const& list)
    {
        return list.isEmpty() ? T() : list.at(m_random.bounded(list.size()));
    }

    bool finished(CMVoidReply const& reply, QString const& what)
    {
        ++requests;
        if (!TarnClient::wait(reply, kPatienceMs)) {
            unfinished << what;
            return false;
        }
        if (reply.hasError()) {
            ++failures;
            ++errors[what.section(QLatin1Char(' '), 0, 1) + QStringLiteral(": ") + reply.error().messageText()];
        }
        return !reply.hasError();
    }

    void browse(CMPath const& path, int from)
    {
        finished(TarnClient::rows(path, from, from + 24, rowRoles()), QStringLiteral("rows of ") + path.toEncoded());
    }

    // A page within the listing, as a user interface scrolls.
    void page()
    {
        int const i = m_random.bounded(m_places.listings.size());
        browse(m_places.listings.at(i), 25 * m_random.bounded(qMax(1, (m_places.counts.at(i) + 24) / 25)));
    }

    void readValues()
    {
        TarnRoles const row = pick(m_places.playable);
        finished(TarnClient::data(row.path(), {TarnRoles::Id(), TarnRoles::Title(), TarnRoles::MediaData()}),
                 QStringLiteral("data of ") + row.path().toEncoded());
    }

    // As the player asks for a stream.
    void play()
    {
        TarnRoles const row = pick(m_places.playable);
        CMPath const prePlay = row.mediaData().metaData().prePlayPath();
        if (!prePlay.isEmpty())
            finished(TarnClient::setData(prePlay, TarnRoles::Value(), row.__variant()),
                     QStringLiteral("prePlay of ") + row.path().toEncoded());
    }

    // Opens the search form, types into its fields and presses its submit.
    void search()
    {
        auto form = TarnClient::rows(m_places.search, 0, 49, rowRoles());
        if (!finished(form, QStringLiteral("rows of the search")))
            return;
        CMPath const dialog = form.value().hasRowsRedirect() ? form.value().rowsRedirect() : m_places.search;
        auto fields = TarnClient::rows(dialog, 0, 49, rowRoles());
        if (!finished(fields, QStringLiteral("rows of ") + dialog.toEncoded()))
            return;
        for (TarnRoles const& row : rowsOf(fields.value())) {
            if (row.id().contains(QLatin1String("/field/")))
                finished(TarnClient::setData(row.path(), TarnRoles::Value(), TarnValue().setString_(QStringLiteral("a")).__variant()),
                         QStringLiteral("value of ") + row.path().toEncoded());
            else if (row.id().endsWith(QLatin1String("/button/submit")))
                finished(TarnClient::setData(row.path(), TarnRoles::Activate(), true),
                         QStringLiteral("press of ") + row.path().toEncoded());
        }
    }

    Places const& m_places;
    QRandomGenerator m_random;
    int m_ms;
    std::thread m_thread;
};

class Load : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
        PlatformValues values;
        values.baseUrl = cloud.baseUrl();
        values.secret = cloud.secret();
        values.apply();
        QString error;
        worker = qobject_cast<CMWorker*>(host.loadModule(QStringLiteral(TARN_MODULE_FILE), {}, &error));
        ASSERT_NE(worker, nullptr) << error.toStdString();
    }

    void TearDown() override { host.unloadAll(); }

    TarnRowsRoles list(CMPath const& path)
    {
        auto reply = TarnClient::rows(path, 0, 24, rowRoles());
        EXPECT_TRUE(TarnClient::wait(reply, kPatienceMs)) << path.toEncoded().toStdString();
        return reply.value();
    }

    // The radios, a podcast and a service that takes no login, two levels
    // down: enough places for eight clients to meet in.
    Places explore()
    {
        Places places;
        places.root = worker->prefixPath();
        places.search = worker->addPrefix(cloud.baseUrl() + QStringLiteral("/airable/radios/search"));
        QList<CMPath> queue{worker->addPrefix(cloud.baseUrl() + QStringLiteral("/airable/radios")),
                            worker->addPrefix(cloud.baseUrl() + QStringLiteral("/airable/feeds"))};
        while (!queue.isEmpty() && places.listings.size() < 12) {
            CMPath const path = queue.takeFirst();
            TarnRowsRoles const page = list(path);
            places.listings << path;
            places.counts << page.rowsCount();
            for (TarnRoles const& row : rowsOf(page)) {
                if (row.type().toString() == TarnRolesType::Container() && !row.path().isEmpty())
                    queue << row.path();
                else if (row.type().toString() == TarnRolesType::Audio())
                    places.playable << row;
            }
        }
        return places;
    }

    cloudsim::CloudServer cloud;
    TarnHost host;
    CMWorker* worker = nullptr;
};

TEST_F(Load, eightClientsAtOnceGetEveryAnswer)
{
    Places const places = explore();
    ASSERT_FALSE(places.listings.isEmpty());
    ASSERT_FALSE(places.playable.isEmpty());

    QList<Client*> clients;
    for (int i = 0; i < 8; ++i)
        clients << new Client(places, 1000 + i, 8000);
    for (Client* c : clients)
        c->start();
    int requests = 0;
    int failures = 0;
    QMap<QString, int> errors;
    for (Client* c : clients) {
        c->join();
        for (auto it = c->errors.cbegin(); it != c->errors.cend(); ++it)
            errors[it.key()] += it.value();
        requests += c->requests;
        failures += c->failures;
        for (QString const& what : c->unfinished)
            ADD_FAILURE() << "no answer: " << what.toStdString();
        delete c;
    }
    EXPECT_GT(requests, 8);
    std::cout << "load: " << requests << " requests by 8 clients, " << failures << " answered with an error" << std::endl;
    for (auto it = errors.cbegin(); it != errors.cend(); ++it)
        std::cout << "  " << it.value() << " " << it.key().toStdString() << std::endl;
}

} // namespace
