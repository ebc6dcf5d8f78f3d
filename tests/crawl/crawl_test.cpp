#include "crawler.h"

#include "cloudserver.h"
#include "patience.h"
#include "platformvalues.h"
#include "simulatedstreamer.h"
#include "tarnclient.h"
#include "tarnconstants.h"
#include "tarnhost.h"
#include "tarnvalue.h"
#include "testcertificates.h"
#include "testprograms.h"

#include <QElapsedTimer>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <iostream>

namespace {

// The module loaded as the device loads it, against the simulated cloud's
// own catalogue, with a medium bitrate so that tracks choose among their
// streams; the cloud over plain HTTP, or over HTTPS with a certificate of a
// CA the device and the person's browser are told to trust.
class Crawl : public ::testing::TestWithParam<bool>
{
protected:
    void SetUp() override
    {
        cloudsim::CloudOptions options;
        if (GetParam()) {
            TestCertificates const certificates(dataDir.path());
            ASSERT_TRUE(certificates.isValid()) << certificates.errorString().toStdString();
            options.tlsCertificate = certificates.good().certificate;
            options.tlsKey = certificates.good().key;
            caCertificates = certificates.caFile();
        }
        cloud = std::make_unique<cloudsim::CloudServer>(options);
        ASSERT_TRUE(cloud->start()) << cloud->errorString().toStdString();

        PlatformValues values;
        values.baseUrl = cloud->baseUrl();
        values.secret = cloud->secret();
        values.caCertificates = caCertificates;
        values.pageSize = 25;
        values.bitrate = TarnAirableStreamBitrate::Medium;
        values.apply();
        QString error;
        worker = qobject_cast<CMWorker*>(host.loadModule(QStringLiteral(TARN_MODULE_FILE), {}, &error));
        ASSERT_NE(worker, nullptr) << error.toStdString();
    }

    void TearDown() override
    {
        host.unloadAll();
        PlatformValues().apply();
    }

    Crawler::Setup setup() const
    {
        Crawler::Setup s = Crawler::forWorker(worker, cloud->baseUrl());
        s.caCertificates = caCertificates;
        return s;
    }

    QString at(QString const& cloudPath) const { return worker->addPrefix(cloud->baseUrl() + cloudPath).toEncoded(); }

    QTemporaryDir dataDir;
    QString caCertificates;
    std::unique_ptr<cloudsim::CloudServer> cloud;
    TarnHost host;
    CMWorker* worker = nullptr;
};

// The whole sample catalogue, as a person with a remote control would see
// it who opens everything and plays everything: an entry that breaks on the
// way fails here, with the path, the request and the answer.
TEST_P(Crawl, everyListingListsAndEveryPlayableRowPlaysAStreamOfTheCloud)
{
    SimulatedStreamer streamer;
    streamer.makeActive();
    Crawler crawler(setup(), &streamer);
    QElapsedTimer clock;
    clock.start();
    crawler.run();

    for (Crawler::Problem const& p : crawler.problems())
        ADD_FAILURE() << p.path.toStdString() << "\n  " << p.request.toStdString() << ": " << p.result.toStdString();

    // Served on purpose with an encryption that no device here can open, a
    // station the cloud refuses and a program whose tracks have no streams.
    QHash<QString, QString> const refused{
        {QStringLiteral("airable://amazon/track/am-odd1"), QStringLiteral("Unsupported encryption type")},
        {QStringLiteral("airable://amazon/program/station.world"),
         QStringLiteral("This station is not available in your country.")},
        {QStringLiteral("airable://deezer/program/sessions"), QStringLiteral("Too many invalid items")}};
    QSet<QString> kindsPlayed;
    for (Crawler::Play const& play : crawler.plays()) {
        if (refused.contains(play.id)) {
            EXPECT_TRUE(play.failure.contains(refused.value(play.id))) << play.path.toStdString() << ": " << play.failure.toStdString();
            continue;
        }
        EXPECT_FALSE(play.uri.isEmpty()) << play.path.toStdString() << "\n  play: " << play.failure.toStdString();
        if (!play.uri.isEmpty())
            kindsPlayed << play.id.section(QLatin1Char('/'), 2, 3);
    }

    // Every service was reached down to what it plays, those that take a
    // password through their login forms and the others through their
    // login pages, programs through the module's play logic.
    for (char const* kind : {"airable/radio", "airable/feed.episode", "deezer/track", "deezer/program", "qobuz/track",
                             "tidal/track", "amazon/track", "amazon/program", "napster/track", "highresaudio/track"})
        EXPECT_TRUE(kindsPlayed.contains(QString::fromLatin1(kind))) << kind;
    QStringList logins = crawler.logins();
    logins.sort();
    EXPECT_EQ(logins, (QStringList{QStringLiteral("amazon"), QStringLiteral("deezer"), QStringLiteral("highresaudio"),
                                   QStringLiteral("napster"), QStringLiteral("qobuz"), QStringLiteral("tidal")}));
    // The dialogs a person meets on the way: searches, the paused session,
    // the offer to sign up, the logins.
    for (char const* dialog : {"/qobuz/search", "/airable/radios/search", "/airable/radios/history/clear",
                               "/messages/paused", "/amazon/unlimited", "/deezer", "/tidal", "/amazon"})
        EXPECT_TRUE(crawler.dialogs().contains(at(QString::fromLatin1(dialog)))) << dialog;
    QStringList programs = crawler.programs();
    programs.sort();
    EXPECT_EQ(programs, (QStringList{QStringLiteral("airable://amazon/program/station.chill"),
                                     QStringLiteral("airable://amazon/program/station.world"),
                                     QStringLiteral("airable://deezer/program/flow"),
                                     QStringLiteral("airable://deezer/program/sessions")}));

    // Streams played were reported to the cloud as they started and ended,
    // each by the event URLs of its own redirect.
    auto const heard = [this](QString const& word, QString const& stream) {
        for (cloudsim::PlaybackEvent const& e : cloud->eventLog()) {
            if (e.word == word && e.stream == stream)
                return true;
        }
        return false;
    };
    CMReply<QVariant> const never;
    for (int waited = 0; waited < kPatienceMs && !heard(QStringLiteral("stop"), QStringLiteral("f303-e5")); waited += 20)
        TarnClient::wait(never, 20);
    for (char const* stream : {"r1001-1", "g2229-1", "dz-al1t1-128", "dz-fl1", "am-al1t1", "am-st1", "f303-e5"}) {
        EXPECT_TRUE(heard(QStringLiteral("start"), QString::fromLatin1(stream))) << stream;
        EXPECT_TRUE(heard(QStringLiteral("stop"), QString::fromLatin1(stream))) << stream;
    }

    std::cout << "crawled " << crawler.listings().size() << " listings, " << crawler.rowCount() << " rows, "
              << crawler.redirectCount() << " redirects; logged in to " << crawler.logins().size()
              << " services; played " << crawler.plays().size() << " rows, " << crawler.programs().size()
              << " of them programs; skipped " << crawler.dialogs().size() << " dialogs; " << clock.elapsed() << " ms"
              << std::endl;
}

INSTANTIATE_TEST_SUITE_P(Cloud, Crawl, ::testing::Values(false, true),
                         [](auto const& info) { return std::string(info.param ? "overHttps" : "overHttp"); });

} // namespace
