#include "browse_fixture.h"

TEST_F(Browse, pagesAreFetchedByTheirNumberAndCountTheWholeListing)
{
    CMPath const all = at(QStringLiteral("/airable/radios/all"));
    TarnRowsRoles first = rows(all, 0, 24);
    ASSERT_TRUE(lastError.isEmpty()) << lastError.messageText().toStdString();
    EXPECT_EQ(first.rowsCount(), 230);
    EXPECT_EQ(first.rows().size(), 25);
    EXPECT_EQ(paths(), QStringList{QStringLiteral("/airable/radios/all")}); // no page parameter from row 0

    TarnRowsRoles const second = rows(all, 25, 49);
    EXPECT_EQ(second.rows().size(), 25);
    EXPECT_EQ(paths().last(), QStringLiteral("/airable/radios/all?p=2"));

    TarnRowsRoles const fifth = rows(all, 100, 119);
    EXPECT_EQ(fifth.rows().size(), 20);
    EXPECT_EQ(paths().last(), QStringLiteral("/airable/radios/all?p=5"));
    EXPECT_EQ(text(fifth.rows().at(0).toList().at(0)), text(rows(all, 100, 100).rows().at(0).toList().at(0)));

    TarnRowsRoles const last = rows(all, 225, 240);
    EXPECT_EQ(last.rows().size(), 5);
    EXPECT_EQ(last.rowsCount(), 230);
}

TEST_F(Browse, heldPageAnswersWithoutACloudCall)
{
    CMPath const popular = at(QStringLiteral("/airable/radios/popular"));
    LogCapture log;
    rows(popular, 0, 3);
    cloud->clearLog();
    TarnRowsRoles const more = rows(popular, 4, 7);
    EXPECT_EQ(more.rows().size(), 4);
    EXPECT_TRUE(paths().isEmpty());
    EXPECT_TRUE(log.contains(QStringLiteral("Using cached result")));
}

TEST_F(Browse, paginationIsKeptPerPathUntilNobodyWatches)
{
    CMPath const all = at(QStringLiteral("/airable/radios/all"));
    LogCapture log;
    {
        CMRowsWatch watch(all);
        ASSERT_TRUE(watch.isValid());
        rows(all, 0, 24);
        rows(worker->prefixPath(), 0, 0); // the held listing is now another one
        rows(all, 50, 74);
        EXPECT_EQ(paths().last(), QStringLiteral("/airable/radios/all?p=3"));
        EXPECT_FALSE(log.contains(QStringLiteral("We don't have pagination in cache")));
    }
    rows(worker->prefixPath(), 0, 0); // the worker has seen the path go by now
    rows(all, 50, 74);
    EXPECT_TRUE(log.contains(QStringLiteral("We don't have pagination in cache. Should not happen!")));
    EXPECT_EQ(paths().last(), QStringLiteral("/airable/radios/all?p=3"));
}

TEST_F(Browse, badRangesAndBadUrlsAreRefusedWithoutACall)
{
    CMError const range = rowsError(at(QStringLiteral("/airable/radios")), 5, 4);
    EXPECT_EQ(range.name(), CMError::InvalidArgumentName());
    EXPECT_EQ(range.detail(), QStringLiteral("5 4"));
    EXPECT_TRUE(paths().isEmpty());

    CMError const url = rowsError(worker->addPrefix(QStringLiteral("http://[::1")), 0, 9);
    EXPECT_EQ(url.messageText(), QStringLiteral("Internal error, invalid url: http://[::1"));
    EXPECT_TRUE(paths().isEmpty());
}

TEST_F(Browse, plusStaysInRelativePathsAndBecomesAnEscapeInAbsoluteOnes)
{
    rows(worker->addPrefix(QStringLiteral("/airable/radios/popular?q=a+b")), 0, 1);
    rows(at(QStringLiteral("/airable/radios/popular?q=c+d")), 0, 1);
    QStringList const seen = paths();
    EXPECT_TRUE(seen.contains(QStringLiteral("/airable/radios/popular?q=a+b")));
    EXPECT_TRUE(seen.contains(QStringLiteral("/airable/radios/popular?q=c%20d")));
}

class BrowseShortPage : public Browse
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/short": {"id": ["airable", "listing", "short"], "title": "Short",
    "content": {
      "collection": {"size": 120, "limit": 25, "offset": 0},
      "pagination": {"pages": {"url": "{base}/short?page=:value:", "replace": ":value:"}},
      "entries": [
        {"id": ["airable", "radio", "s1"], "title": "S1", "url": "{base}/s/1"},
        {"id": ["airable", "radio", "s2"], "title": "S2", "url": "{base}/s/2"},
        {"id": ["airable", "radio", "s3"], "title": "S3", "url": "{base}/s/3"}
      ]}},
  "/history": {"id": ["airable", "listing", "library.history"], "title": "Recently played",
    "content": {"entries": [{"id": ["airable", "radio", "h1"], "title": "H1", "url": "{base}/h/1"}]}}
})";
    }
};

TEST_F(BrowseShortPage, shortPageIsFilledWithBlankRows)
{
    QStringList const roles{TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Id()};
    TarnRowsRoles const page = rows(at(QStringLiteral("/short")), 0, 24, roles);
    EXPECT_EQ(page.rowsCount(), 120);
    ASSERT_EQ(page.rows().size(), 25);
    EXPECT_EQ(text(page.rows().at(2).toList().at(0)), QStringLiteral("S3"));
    QVariantList const blank = page.rows().at(3).toList();
    EXPECT_EQ(blank.at(0).toString(), QStringLiteral(" "));
    EXPECT_EQ(blank.at(1).toString(), TarnRolesType::Text());
    EXPECT_FALSE(blank.at(2).isValid());
    EXPECT_EQ(page.roles().value(TarnRoles::ContainerType()).toInt(), 0);

    // The cloud's own limit, not the configured one, places later pages.
    rows(at(QStringLiteral("/short")), 50, 60, roles);
    EXPECT_EQ(paths().last(), QStringLiteral("/short?page=3"));
}

TEST_F(BrowseShortPage, historyListingHasTheDynamicContainerType)
{
    TarnRowsRoles const history = rows(at(QStringLiteral("/history")), 0, 9);
    EXPECT_EQ(history.roles().value(TarnRoles::ContainerType()).toInt(), 11);
    EXPECT_EQ(history.roles().id(), QStringLiteral("airable://airable/listing/library.history"));
    EXPECT_EQ(history.roles().title().toString(), QStringLiteral("Recently played"));
}

class BrowseHeldPage : public Browse
{
protected:
    // "/deep" always answers the page that starts at row 100, whatever is
    // asked; "/flat" has no collection, so no page of its own.
    QByteArray documents() const override
    {
        return R"({
  "/deep": {"id": ["airable", "listing", "deep"], "title": "Deep", "content": {
    "collection": {"size": 230, "limit": 25, "offset": 100},
    "pagination": {"pages": {"url": "{base}/deep?page=:value:", "replace": ":value:"}},
    "entries": [{"id": ["airable", "radio", "d1"], "title": "D1", "url": "{base}/d/1"}]}},
  "/flat": {"id": ["airable", "listing", "flat"], "title": "Flat", "content": {"entries": [
    {"id": ["airable", "radio", "f1"], "title": "F1", "url": "{base}/f/1"}]}}
})";
    }
    int pageSize() const override { return 0; }
};

TEST_F(BrowseHeldPage, rowsBeforeTheHeldPageAreFetchedAndAPageWithoutThemIsAnError)
{
    CMPath const deep = at(QStringLiteral("/deep"));
    LogCapture log;
    EXPECT_EQ(rowsError(deep, 0, 5).messageText(), QStringLiteral("Error during communication with server"));
    ASSERT_EQ(paths(), QStringList{QStringLiteral("/deep")});

    // The held page starts after the rows asked: it is asked again, and
    // still lacks them.
    CMError const again = rowsError(deep, 0, 5);
    EXPECT_TRUE(log.contains(QStringLiteral("Using cached result")));
    EXPECT_EQ(paths(), (QStringList{QStringLiteral("/deep"), QStringLiteral("/deep")}));
    EXPECT_EQ(again.message().data().context.toStdString(), "CMAirableWorker::setStandardErrorMessage(const CMRequest&)");
}

TEST_F(BrowseHeldPage, pageSizeZeroAsksTheFirstPage)
{
    rows(at(QStringLiteral("/flat")), 30, 40);
    EXPECT_EQ(paths(), QStringList{QStringLiteral("/flat?p=1")});
}
