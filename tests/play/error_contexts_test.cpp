#include "play_fixture.h"

#include "trstring.h"

#include <functional>

// Translators key on the signature text of the function that raised a text.
// Each row makes the module raise one of its translatable texts through a
// real request and names the function that must have raised it, written as
// the compiler writes a signature.

class ErrorContexts : public Play
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/odd": {"id": ["qobuz", "error", "odd"]},
  "/plain": {"id": ["qobuz", "track", "plain"], "title": "Not a listing", "url": "{base}/plain"},
  "/garbage": {"@body": "no json at all"},
  "/id/qobuz/track/login": {"id": ["qobuz", "form", "login"], "title": "Log in first"},
  "/id/qobuz/track/gone": {"id": ["qobuz", "listing", "gone"], "title": "No track"},
  "/st/empty": {"id": ["qobuz", "redirect", "empty"], "url": ""},
  "/st/odd": {"id": ["amazon", "redirect", "odd"], "url": "{base}/media/odd.mp4",
              "content": {"id": ["amazon", "track", "odd"], "title": "Odd"},
              "encryption": {"id": ["amazon", "encryption", "e"], "type": "playready"}},
  "/resume": {"@status": 204, "@body": ""}
})";
    }

    CMError rowsError(CMPath const& path)
    {
        auto reply = TarnClient::rows(path, 0, 9, {TarnRoles::Title()});
        EXPECT_TRUE(TarnClient::wait(reply, kPatienceMs));
        return reply.error();
    }

    CMError dataError(CMPath const& path)
    {
        auto reply = TarnClient::data(path, {TarnRoles::Title()});
        EXPECT_TRUE(TarnClient::wait(reply, kPatienceMs));
        return reply.error();
    }

    CMPath prePlay(QString const& query) const { return worker->addPrefix(QStringLiteral("preplay") + query); }

    CMError streamError(QString const& stream)
    {
        TarnRoles roles;
        roles.setMediaData(TarnMediaData().setResources(
            {TarnResource().setData(cloud->baseUrl() + stream).setUid(QStringLiteral("0")).__variant()}));
        return set(prePlay(QStringLiteral("?serviceType=qobuz&dataType=track&objectId=x")), roles.__variant()).error();
    }

    CMError byIdError(QString const& id)
    {
        CMPath const path = prePlay(QStringLiteral("?serviceType=qobuz&dataType=track&objectId=") + id);
        return set(path, TarnRoles().setPath(path).__variant()).error();
    }

    QList<RaisedText> raisedTexts()
    {
        return {
            {"Actions", "virtual void CMAirableWorker::getDataRequest(const CMGetDataRequest&)",
             [this] {
                 auto reply = TarnClient::data(worker->addPrefix(TarnAirablePrefixContext() + QStringLiteral(":")),
                                               {TarnRoles::Title()});
                 EXPECT_TRUE(TarnClient::wait(reply, kPatienceMs));
                 TrString const title = reply.value().value(0).value<TrString>();
                 return CMError(CMError::DefaultName(), title);
             }},
            {"Internal error, invalid url: %1",
             "void CMAirableWorker::sendRequest(const CMRequest&, const char*, QObject*, const QVariant&)",
             [this] { return rowsError(worker->addPrefix(QStringLiteral("http://[::1"))); }},
            {"Internal error, missing serviceType, dataType or objectId",
             "void CMAirableWorker::sendRequest(const CMRequest&, const char*, QObject*, const QVariant&)",
             [this] { return set(prePlay(QStringLiteral("?serviceType=qobuz")), TarnRoles().__variant()).error(); }},
            {"Error during communication with server",
             "void CMAirableWorker::setStandardErrorMessage(const CMGetRowsRequest&)",
             [this] { return rowsError(at(QStringLiteral("/odd"))); }},
            {"Error during communication with server",
             "void CMAirableWorker::setStandardErrorMessage(const CMRequest&)",
             [this] { return dataError(at(QStringLiteral("/garbage"))); }},
            {"Playback Url is empty",
             "void CMAirableWorker::on_redirectDone(const AirableConnect::Reply&, const CMRequest&, const QVariant&)",
             [this] { return streamError(QStringLiteral("/st/empty")); }},
            {"Unsupported encryption type",
             "void CMAirableWorker::on_redirectDone(const AirableConnect::Reply&, const CMRequest&, const QVariant&)",
             [this] { return streamError(QStringLiteral("/st/odd")); }},
            {"Can't retrieve track from server",
             "void CMAirableWorker::on_redirectDone(const AirableConnect::Reply&, const CMRequest&, const QVariant&)",
             [this] { return streamError(QStringLiteral("/garbage")); }},
            {"We are not logged in service or something",
             "void CMAirableWorker::on_gettingTrackDone(const AirableConnect::Reply&, const CMRequest&, const QVariant&)",
             [this] { return byIdError(QStringLiteral("login")); }},
            {"Can't retrive track from server",
             "void CMAirableWorker::on_gettingTrackDone(const AirableConnect::Reply&, const CMRequest&, const QVariant&)",
             [this] { return byIdError(QStringLiteral("gone")); }},
            {"Failed to resume playback!",
             "CMAirableWorker::resumePausedPlayback(const TarnUrl&, const CMSetDataRequest&)::<lambda(const "
             "AirableConnect::Reply&)>",
             [this] {
                 CMSetDataRequest const request(at(QStringLiteral("/resume")), TarnRoles::Activate(), true);
                 TarnUrl const url(cloud->baseUrl() + QStringLiteral("/resume"));
                 probe->onWorker([url, request](CMAirableWorker* w) { w->resumePausedPlayback(url, request); });
                 EXPECT_TRUE(TarnClient::wait(request.reply(), kPatienceMs));
                 return request.reply().error();
             }},
        };
    }
};

TEST_F(ErrorContexts, everyTranslatableTextCarriesTheSignatureOfTheFunctionThatRaisedIt)
{
    for (auto const& row : raisedTexts()) {
        SCOPED_TRACE(row.text);
        TrCharData const data = row.shown();
        EXPECT_EQ(data.source.toStdString(), row.text);
        EXPECT_EQ(data.context.toStdString(), trExtractContext(row.signature).toStdString());
    }
}

TEST(TranslationContext, keepsNameAndParametersAndALambdaItsWholeName)
{
    EXPECT_EQ(trExtractContext("virtual void CMAirableWorker::getDataRequest(const CMGetDataRequest&)"),
              QStringLiteral("CMAirableWorker::getDataRequest(const CMGetDataRequest&)"));
    EXPECT_EQ(trExtractContext("QString* const* A::b(int (*)(char)) const"), QStringLiteral("A::b(int (*)(char))"));
    EXPECT_EQ(trExtractContext("A::b(const T&)::<lambda(const R&)>"), QStringLiteral("A::b(const T&)::<lambda(const R&)>"));
    EXPECT_EQ(trExtractContext("plain"), QStringLiteral("plain"));
}
