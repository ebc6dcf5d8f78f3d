#include "dialogs_fixture.h"

#include "showntexts.h"
#include "trstring.h"

#include <QCoreApplication>
#include <QTranslator>
#include <functional>

namespace {

// Translates the texts of one context, and of no other, into the text in
// brackets: a text translated so was raised in that context.
class OneContextTranslator : public QTranslator
{
public:
    explicit OneContextTranslator(QString context) : m_context(std::move(context))
    {
        QCoreApplication::installTranslator(this);
    }
    ~OneContextTranslator() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(char const* context, char const* source, char const*, int n) const override
    {
        ShownTexts::note(context, source, n);
        return QString::fromUtf8(context) == m_context ? QLatin1Char('[') + QString::fromUtf8(source) + QLatin1Char(']')
                                                       : QString();
    }

private:
    QString m_context;
};

char const* const contentContextDone =
    "void CMAirableWorker::on_getContentContextDone(const AirableConnect::Reply&, const CMRequest&, const QVariant&)";

} // namespace

// Menus, dialogs and the login node of the worker, and what they answer
// when a request is not what they expect.
class MenusAndErrors : public Dialogs
{
protected:
    QByteArray documents() const override
    {
        return R"({
  "/garbage": {"@body": "no json at all"},
  "/redirect": {"id": ["qobuz", "redirect", "r"], "url": "{base}/media/r.mp3"},
  "/qobuz/artist": {"id": ["qobuz", "artist", "ar"], "title": "Ada Quell", "url": "{base}/qobuz/artist",
    "description": "A singer.", "content": {"entries": []}},
  "/qobuz/album": {"id": ["qobuz", "album", "al"], "title": "Estuary", "url": "{base}/qobuz/album",
    "description": "A record.", "content": {"entries": []}},
  "/qobuz/track": {"id": ["qobuz", "track", "tr"], "title": "Low Water", "url": "{base}/qobuz/track",
    "description": "A song."},
  "/deezer": {"id": ["deezer", "form", "login"], "title": "Log in to Deezer",
    "fields": [{"id": ["deezer", "field", "username"], "title": "E-mail:", "type": "text", "required": true,
                "value": ""}],
    "buttons": [{"id": ["deezer", "button", "submit"], "title": "Log in", "url": "{base}/deezer/login"}]},
  "/confirm": {"id": ["qobuz", "message", "confirm"], "title": "Confirm", "description": "Really?",
    "buttons": [
      {"id": ["qobuz", "button", "ok"], "title": "OK", "url": "{base}/qobuz/done"},
      {"id": ["qobuz", "button", "cancel"], "title": "Cancel"}]}
})";
    }

    CMPath contentContext(QString const& cloudPath) const
    {
        return worker->addPrefix(TarnAirablePrefixContentContext() + QLatin1Char(':') + cloud->baseUrl() + cloudPath);
    }
    CMPath message(int id) const { return worker->addPrefix(TarnAirablePrefixMessage() + QString::number(id)); }
    CMPath button(int id, int index) const { return message(id) + QStringLiteral(":%1").arg(index); }

    // The error of a rows request that the worker's own function is given
    // directly, on the worker's thread.
    CMError direct(std::function<void(CMAirableWorker*, CMGetRowsRequest const&)> const& handle)
    {
        CMGetRowsRequest const request(at(QStringLiteral("/direct")), 0, 9, -1, {TarnRoles::Title()});
        probe->onWorker([&handle, request](CMAirableWorker* w) { handle(w, request); });
        EXPECT_TRUE(request.reply().isFinished());
        return request.reply().error();
    }

    QList<RaisedText> raisedTexts()
    {
        return {
            {"Couldn't parse data from request", contentContextDone,
             [this] {
                 listing(contentContext(QStringLiteral("/garbage")));
                 return lastError;
             }},
            {"Couldn't cast object to item", contentContextDone,
             [this] {
                 listing(contentContext(QStringLiteral("/redirect")));
                 return lastError;
             }},
            // The compiler writes the class's own member type without the
            // class's name.
            {"Actions",
             "void CMAirableWorker::handleContextMenu(const CMGetRowsRequest&, const QList<ContextAction>&, const "
             "QList<TarnRoles>&)",
             [this] {
                 TarnRowsRoles const menu = listing(worker->addPrefix(TarnAirablePrefixContext() + QLatin1Char(':')));
                 return CMError(CMError::DefaultName(), menu.roles().title());
             }},
            {"Unsupported role", "virtual void AirableOAuth::setDataRequest(const CMSetDataRequest&)",
             [this] { return set(TarnAirableOAuthPath(), QVariant(), TarnRoles::Title()).error(); }},
            // The worker gives these two only what it has found to be a form
            // or a message, so no request of a client reaches their check.
            {"Internal airable error: not a form!",
             "bool CMAirableWorker::handleForm(const CMGetRowsRequest&, "
             "portable::SmartPointer<airable::AirableObject>)",
             [this] {
                 return direct([](CMAirableWorker* w, CMGetRowsRequest const& r) {
                     w->handleForm(r, airable::AirableObject::Ptr());
                 });
             }},
            {"Internal airable error: not a message!",
             "bool CMAirableWorker::handleMessage(const CMGetRowsRequest&, "
             "portable::SmartPointer<airable::AirableObject>)",
             [this] {
                 return direct([](CMAirableWorker* w, CMGetRowsRequest const& r) {
                     w->handleMessage(r, airable::AirableObject::Ptr());
                 });
             }},
            // A press of a form's button is a branch of the set-data slot.
            {"Internal airable error: wrong form index!", "void CMAirableWorker::on_setDataRequest(CMSetDataRequest)",
             [this] {
                 return press(worker->addPrefix(TarnAirablePrefixForm() + QStringLiteral("77:submit"))).error();
             }},
            {"Input field validation error!", "void CMAirableWorker::on_setDataRequest(CMSetDataRequest)",
             [this] { return press(open(QStringLiteral("/deezer")) + QStringLiteral(":submit")).error(); }},
            {"Internal airable error: wrong index!", "void CMAirableWorker::submitMessage(const CMSetDataRequest&)",
             [this] { return press(button(77, 0)).error(); }},
        };
    }
};

TEST_F(MenusAndErrors, everyTranslatableTextCarriesTheSignatureOfTheFunctionThatRaisedIt)
{
    for (auto const& row : raisedTexts()) {
        SCOPED_TRACE(row.text);
        TrCharData const data = row.shown();
        EXPECT_EQ(data.source.toStdString(), row.text);
        EXPECT_EQ(data.context.toStdString(), trExtractContext(row.signature).toStdString());
    }
}

// An information block's heading is turned into plain text where it is
// made, so its context shows only in how it is translated.
TEST_F(MenusAndErrors, infoHeadingsAreTranslatedInTheContextOfTheSlotThatBuildsTheMenu)
{
    OneContextTranslator const translator(trExtractContext(contentContextDone));
    struct Case
    {
        char const* item;
        char const* heading;
    };
    for (Case const c : {Case{"/qobuz/artist", "[ARTIST INFO]"}, Case{"/qobuz/album", "[ALBUM INFO]"},
                         Case{"/qobuz/track", "[TRACK INFO]"}}) {
        TarnRowsRoles const menu = listing(contentContext(QString::fromLatin1(c.item)));
        ASSERT_EQ(menu.rowsCount(), 2) << c.item << lastError.messageText().toStdString();
        EXPECT_EQ(text(row(menu, 1).title()), c.heading) << c.item;
    }
}

TEST_F(MenusAndErrors, aMessagePushedOutOfTheCacheAnswersWrongIndexAndAPressKeepsItsMessageIn)
{
    for (int id = 1; id <= 100; ++id)
        ASSERT_EQ(open(QStringLiteral("/confirm")), message(id));
    // The press makes the first message the most recently used, so the
    // second is the one the hundred and first pushes out.
    ASSERT_FALSE(press(button(1, 1)).hasError());
    ASSERT_EQ(open(QStringLiteral("/confirm")), message(101));

    EXPECT_EQ(press(button(2, 1)).error().messageText(), QStringLiteral("Internal airable error: wrong index!"));
    EXPECT_FALSE(press(button(1, 1)).hasError());
    EXPECT_FALSE(press(button(101, 1)).hasError());
}
