#include "browse_fixture.h"
#include "patience.h"

#include <QFileInfo>
#include <QTest>

TEST_F(Browse, rootListsEveryServiceWithIconsAndMakesItsNodesOnce)
{
    LogCapture log;
    TarnRowsRoles const root = rows(worker->prefixPath(), 0, 49);
    ASSERT_TRUE(lastError.isEmpty()) << lastError.messageText().toStdString();
    ASSERT_EQ(root.rowsCount(), 8);
    ASSERT_EQ(root.rows().size(), 8);

    QStringList titles;
    for (auto const& v : root.rows()) {
        QVariantList const row = v.toList();
        titles << text(row[0]);
        EXPECT_EQ(row[1].toString(), TarnRolesType::Container());
        if (row[4].toString() == QLatin1String("airable://airable/service/napster"))
            EXPECT_EQ(row[3].toString(), TarnService_Napster_Icon()); // no images: the table's icon
        else
            EXPECT_TRUE(row[3].toString().startsWith(cloud->baseUrl() + QStringLiteral("/images/")));
    }
    EXPECT_TRUE(titles.contains(QStringLiteral("Deezer")));
    EXPECT_EQ(log.count(QStringLiteral("Service nodes created")), 1);

    // Each service has its redirect node.
    TarnRowsRoles const deezer = rows(TarnAirableBrowseServicePrefix() + QStringLiteral("deezer"), 0, 9);
    EXPECT_TRUE(deezer.hasRowsRedirect());
    EXPECT_EQ(deezer.rowsRedirect(), at(QStringLiteral("/deezer")));

    // A second answer on the root makes no second set of nodes.
    rows(at(QStringLiteral("/qobuz")), 0, 9);
    rows(worker->prefixPath(), 0, 9);
    EXPECT_EQ(paths().count(QStringLiteral("/")), 2);
    EXPECT_EQ(log.count(QStringLiteral("Service nodes created")), 1);
}

TEST_F(Browse, serviceNodeAskedFirstFetchesTheRootOnce)
{
    auto first = TarnClient::rows(TarnAirableBrowseServicePrefix() + QStringLiteral("qobuz"), 0, 9,
                                  defaultRoles());
    auto second = TarnClient::rows(TarnAirableBrowseServicePrefix() + QStringLiteral("tidal"), 0, 9,
                                   defaultRoles());
    ASSERT_TRUE(TarnClient::wait(first, kPatienceMs));
    ASSERT_TRUE(TarnClient::wait(second, kPatienceMs));
    EXPECT_EQ(first.value().rowsRedirect(), at(QStringLiteral("/qobuz")));
    EXPECT_EQ(second.value().rowsRedirect(), at(QStringLiteral("/tidal")));
    // Side by side, each forced its own fetch of the root; nothing else.
    EXPECT_EQ(paths(), (QStringList{QStringLiteral("/"), QStringLiteral("/")}));

    cloud->clearLog();
    rows(TarnAirableBrowseServicePrefix() + QStringLiteral("deezer"), 0, 9);
    EXPECT_TRUE(paths().isEmpty());
}

TEST_F(Browse, serviceIndexOfAnotherServiceRedirectsAndErrorsCarryTheirText)
{
    TarnRowsRoles const index = rows(at(QStringLiteral("/tidal/index")), 0, 9);
    EXPECT_EQ(index.rowsRedirect(), at(QStringLiteral("/tidal")));
    EXPECT_TRUE(index.rows().isEmpty());

    TarnRowsRoles const tidal = rows(at(QStringLiteral("/tidal")), 0, 9);
    EXPECT_FALSE(tidal.hasRowsRedirect());
    EXPECT_GT(tidal.rowsCount(), 0);

    CMError const error = rowsError(at(QStringLiteral("/errors/message")), 0, 9);
    EXPECT_EQ(error.name(), QStringLiteral("Error"));
    EXPECT_FALSE(error.messageText().isEmpty());

    CMError const plain = rowsError(at(QStringLiteral("/errors/plain")), 0, 9);
    EXPECT_EQ(plain.messageText(), QStringLiteral("Error during communication with server"));
    EXPECT_EQ(plain.message().data().context,
              QStringLiteral("CMAirableWorker::setStandardErrorMessage(const CMGetRowsRequest&)"));
}

class BrowseCatalogue : public Browse
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/": {"id": ["airable", "listing", "index"], "title": "Services", "content": {"entries": [
    {"id": ["airable", "service", "deezer"], "title": "Deezer", "url": "{base}/deezer"},
    {"id": ["airable", "service", "broken"], "title": "Broken", "url": "http://[::1"},
    {"id": ["airable", "service", "mystery"], "title": "Mystery", "url": "{base}/mystery"}
  ]}},
  "/deezer": {"id": ["deezer", "listing", "home"], "title": "Deezer", "content": {"entries": []}}
})";
    }
};

TEST_F(BrowseCatalogue, entryWithAnInvalidUrlKeepsItsRowButGetsNoNode)
{
    LogCapture log;
    TarnRowsRoles const root = rows(worker->prefixPath(), 0, 9);
    ASSERT_EQ(root.rowsCount(), 3);
    EXPECT_EQ(text(root.rows().at(1).toList().at(0)), QStringLiteral("Broken"));
    EXPECT_TRUE(log.contains(QStringLiteral("Couldn't parse service URL: http://[::1")));
    // Not in the icon table and no images: no icon.
    EXPECT_FALSE(root.rows().at(2).toList().at(3).isValid());
    EXPECT_EQ(root.rows().at(0).toList().at(3).toString(), TarnService_Deezer_Icon());

    EXPECT_TRUE(rows(TarnAirableBrowseServicePrefix() + QStringLiteral("deezer"), 0, 9).hasRowsRedirect());
    EXPECT_EQ(rowsError(TarnAirableBrowseServicePrefix() + QStringLiteral("broken"), 0, 9).name(),
              QStringLiteral("notFound"));
}

TEST_F(Browse, languageAndAddressChangesDropTheTokenButBitrateDoesNot)
{
    auto authentications = [this] { return cloud->requestsTo(QStringLiteral("/authentication")).size(); };
    rows(at(QStringLiteral("/qobuz")), 0, 0);
    ASSERT_EQ(authentications(), 1);

    auto* root = CMRootWorker::instance();
    root->putValue(TarnAirableStreamBitratePath(), TarnValue().setAirableStreamBitrate(TarnAirableStreamBitrate::Low));
    rows(at(QStringLiteral("/tidal")), 0, 0);
    EXPECT_EQ(authentications(), 1);

    root->putValue(TarnUILanguagePath(), TarnValue().setString_(QStringLiteral("de_DE")));
    rows(at(QStringLiteral("/amazon")), 0, 0);
    ASSERT_EQ(authentications(), 2);
    EXPECT_EQ(cloud->requestsTo(QStringLiteral("/authentication")).last().queryValue(QStringLiteral("locale")),
              QStringLiteral("de-DE"));

    root->putValue(TarnSystemPrimaryMacAddressPath(), TarnValue().setString_(QStringLiteral("01:02:03:04:05:06")));
    rows(at(QStringLiteral("/qobuz")), 0, 0);
    ASSERT_EQ(authentications(), 3);
    EXPECT_EQ(cloud->requestsTo(QStringLiteral("/authentication")).last().queryValue(QStringLiteral("device")),
              QStringLiteral("010203040506"));
}

class BrowseOddRoot : public Browse
{
protected:
    // A root that answers with one item instead of the catalogue.
    QByteArray documents() const override
    {
        return R"({"/": {"id": ["qobuz", "track", "odd"], "title": "Odd", "url": "{base}/"}})";
    }
};

TEST_F(BrowseOddRoot, serviceAskedFirstByDataEndsAfterOneRootFetch)
{
    auto reply = TarnClient::data(TarnAirableBrowseServicePrefix() + QStringLiteral("deezer"), {TarnRoles::Title()});
    ASSERT_TRUE(TarnClient::wait(reply, kPatienceMs));
    // The root named no services, so the tree has no node to answer.
    EXPECT_EQ(reply.error().name(), QStringLiteral("notFound"));
    EXPECT_EQ(paths(), QStringList{QStringLiteral("/")});
}

// The language changes while the device runs, as from its settings menu:
// the next listings come from the cloud in the new language, and the
// module's own texts follow it.
TEST_F(Browse, aLanguageChangeBringsTheNextListingsAndTheModulesTextsInTheNewLanguage)
{
    auto firstTitle = [this](QString const& cloudPath) {
        TarnRowsRoles const listing = rows(at(cloudPath), 0, 0);
        return listing.rows().isEmpty() ? QString() : text(listing.rows().at(0).toList().at(0));
    };
    EXPECT_EQ(firstTitle(QStringLiteral("/airable/radios")), QStringLiteral("Popular stations"));
    cloud->setFault(QStringLiteral("/airable/feeds"), cloudsim::Fault::garbage());
    CMError const refused = rowsError(at(QStringLiteral("/airable/feeds")), 0, 0);
    EXPECT_EQ(refused.messageText(), QStringLiteral("Error during communication with server"));

    CMRootWorker::instance()->putValue(TarnUILanguagePath(), TarnValue().setString_(QStringLiteral("de_DE")));
    EXPECT_EQ(firstTitle(QStringLiteral("/")), QStringLiteral("Radio"));
    if (!QFileInfo::exists(QStringLiteral(TARN_GERMAN_CATALOGUE)))
        GTEST_SKIP() << "built without lrelease: the module's texts stay English";
    // A text is put into words when it is shown, so one raised before the
    // change shows in the new language too.
    EXPECT_TRUE(QTest::qWaitFor([&] { return refused.messageText() != QStringLiteral("Error during communication with server"); },
                                kPatienceMs));
    EXPECT_EQ(refused.messageText(), QStringLiteral("Fehler bei der Kommunikation mit dem Server"));
}
