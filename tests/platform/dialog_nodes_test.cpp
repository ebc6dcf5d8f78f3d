#include "cmnode.h"
#include "cmroot.h"
#include "tarndialogtypes.h"
#include "tarnmediadata.h"

#include <QCoreApplication>
#include <QPointer>
#include <QSharedPointer>
#include <QSignalSpy>
#include <gtest/gtest.h>

// A sign-in dialog built the way a module builds one, used the way a client
// uses it: through the root, by rows, data and set-data requests.

namespace {

class DialogWorker : public CMNodesWorker
{
public:
    DialogWorker() : CMNodesWorker({}, QStringLiteral("Dialogs")) {}
};

template <typename T>
QSharedPointer<T> held(T* node)
{
    return QSharedPointer<T>(node, &CMNode::deleteLater);
}

QStringList const kRowRoles{TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Value(), TarnRoles::Edit(),
                            TarnRoles::Path()};

TarnValue text(QString const& s)
{
    return TarnValue().setString_(s);
}

class DialogNodes : public ::testing::Test
{
protected:
    void SetUp() override
    {
        CMRootWorker::instance()->addWorker(&worker);
        CMNodes* nodes = worker.nodes();
        form = held(CMListRowsNode::create(nodes, at(QStringLiteral("form1"))));
        form->setTitle(TrString("Sign in"));
        form->setContainerType(TarnDialogContainerType::Dialog);

        user = held(CMValueNode::create(nodes, at(QStringLiteral("form1:user")), nullptr));
        user->setTitle(TrString("User name"));
        user->setValue(text(QString()));
        user->setEdit(TarnEdit().setMinLength(1));

        password = held(CMValueNode::create(nodes, at(QStringLiteral("form1:password")), nullptr));
        password->setTitle(TrString("Password"));
        password->setValue(text(QString()));
        password->setEdit(TarnEdit().setPassword(true));

        country = held(CMValueNode::create(nodes, at(QStringLiteral("form1:country")), nullptr));
        country->setTitle(TrString("Country:"));
        country->setValue(text(QStringLiteral("de")));
        CMPath const choices = country->path() + QStringLiteral(":edit");
        country->setEdit(TarnEdit().setType(TarnEditType::Select).setEnumPath(choices));
        options = held(CMListRowsNode::create(nodes, choices));
        options->setContainerType(TarnDialogContainerType::Dialog);
        for (auto const& [value, title] : {std::pair("de", "Germany"), std::pair("fr", "France")})
            options->rowsAppend(TarnRoles().setTitle(TrString(title)).setValue(text(QString::fromUtf8(value)))
                                    .setType(TarnDialogRowType::Option));

        submit = held(CMActivateNode::create(nodes, at(QStringLiteral("form1:submit"))));
        submit->setTitle(TrString("Sign in"));

        for (auto const& node : {user.data(), password.data(), country.data()})
            form->rowsAppend(node->path());
        form->rowsAppend(submit->path());
        TarnResource page;
        page.setUri(QStringLiteral("https://example.com/join"));
        form->rowsAppend(TarnRoles().setTitle(TrString("Create account")).setType(TarnDialogRowType::Link)
                             .setMediaData(TarnMediaData().setResources({page.__variant()})));
    }

    void TearDown() override
    {
        CMRootWorker::instance()->removeWorker(&worker);
    }

    CMPath at(QString const& base) const { return worker.addPrefix(base); }

    static CMReply<TarnRowsRoles> rows(CMPath const& path, int from, int to)
    {
        CMGetRowsRequest r(path, from, to, -1, kRowRoles);
        CMRoot()->request(r);
        EXPECT_TRUE(r.reply().isFinished());
        return r.reply();
    }
    static CMReply<QList<QVariant>> data(CMPath const& path, QStringList const& roles)
    {
        CMGetDataRequest r(path, roles);
        CMRoot()->request(r);
        EXPECT_TRUE(r.reply().isFinished());
        return r.reply();
    }
    static CMReply<QVariant> setValue(CMPath const& path, TarnValue const& value)
    {
        CMSetDataRequest r(path, TarnRoles::Value(), value.__variant());
        CMRoot()->request(r);
        EXPECT_TRUE(r.reply().isFinished());
        return r.reply();
    }
    static QString valueOf(QVariant const& v) { return TarnValue::fromVariant(v).string_(); }

    DialogWorker worker;
    QSharedPointer<CMListRowsNode> form;
    QSharedPointer<CMValueNode> user;
    QSharedPointer<CMValueNode> password;
    QSharedPointer<CMValueNode> country;
    QSharedPointer<CMListRowsNode> options;
    QSharedPointer<CMActivateNode> submit;
};

} // namespace

TEST_F(DialogNodes, formShowsItsFieldsButtonsAndPlainRowsInAnyWindow)
{
    TarnRowsRoles const all = rows(form->path(), 0, 99).value();
    EXPECT_EQ(all.rowsCount(), 5);
    ASSERT_EQ(all.rows().size(), 5);
    EXPECT_EQ(all.roles().value(TarnRoles::ContainerType()).toInt(), int(TarnDialogContainerType::Dialog));
    EXPECT_EQ(all.roles().title().toString(), QStringLiteral("Sign in"));

    QVariantList const select = all.rows().at(2).toList();
    EXPECT_EQ(select.at(0).value<TrString>().toString(), QStringLiteral("Country:"));
    EXPECT_EQ(select.at(1).toString(), TarnRolesType::Value());
    EXPECT_EQ(valueOf(select.at(2)), QStringLiteral("de"));
    TarnEdit const edit(select.at(3).toHash());
    EXPECT_EQ(edit.type(), int(TarnEditType::Select));
    EXPECT_EQ(edit.enumPath(), options->path());
    EXPECT_EQ(all.rows().at(3).toList().at(1).toString(), TarnRolesType::Action());
    EXPECT_EQ(all.rows().at(4).toList().at(1).toInt(), int(TarnDialogRowType::Link));

    TarnRowsRoles const window = rows(form->path(), 1, 2).value();
    EXPECT_EQ(window.rowsCount(), 5);
    ASSERT_EQ(window.rows().size(), 2);
    EXPECT_EQ(CMPath::fromEncoded(window.rows().at(0).toList().at(4).toString()), password->path());
    EXPECT_TRUE(TarnEdit(window.rows().at(0).toList().at(3).toHash()).password());

    TarnRowsRoles const beyond = rows(form->path(), 7, 9).value();
    EXPECT_EQ(beyond.rowsCount(), 5);
    EXPECT_TRUE(beyond.rows().isEmpty());

    TarnRowsRoles const choices = rows(options->path(), 0, 99).value();
    ASSERT_EQ(choices.rowsCount(), 2);
    EXPECT_EQ(valueOf(choices.rows().at(1).toList().at(2)), QStringLiteral("fr"));
    EXPECT_EQ(choices.rows().at(1).toList().at(1).toInt(), int(TarnDialogRowType::Option));
}

TEST_F(DialogNodes, editsAreStoredAndReachTheWatchersOfTheForm)
{
    CMRowsWatch watch(form->path());
    ASSERT_TRUE(watch.isValid());
    QSignalSpy changes(&watch, &CMRowsWatch::changed);
    QSignalSpy changed(country.data(), &CMValueNode::valueChanged);

    EXPECT_FALSE(setValue(user->path(), text(QStringLiteral("me@example.com"))).hasError());
    EXPECT_FALSE(setValue(password->path(), text(QStringLiteral("a+b"))).hasError());
    EXPECT_FALSE(setValue(country->path(), text(QStringLiteral("fr"))).hasError());
    EXPECT_FALSE(setValue(country->path(), text(QStringLiteral("fr"))).hasError());

    EXPECT_EQ(valueOf(data(user->path(), {TarnRoles::Value()}).value().at(0)), QStringLiteral("me@example.com"));
    EXPECT_EQ(country->value().string_(), QStringLiteral("fr"));

    // One reset of the field's own row per change; storing the same value
    // again is no change.
    ASSERT_EQ(changes.count(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(changes.at(i).at(0).toString(), CMSubscribe::RowsChangeReset());
        EXPECT_EQ(changes.at(i).at(1).toInt(), i);
        EXPECT_EQ(changes.at(i).at(2).toInt(), i);
    }
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).value<TarnValue>().string_(), QStringLiteral("fr"));
}

TEST_F(DialogNodes, refusedValuesNameTheFieldAndChangeNothing)
{
    CMRowsWatch watch(form->path());
    QSignalSpy changes(&watch, &CMRowsWatch::changed);
    user->setValue(text(QStringLiteral("me")));

    struct Case
    {
        QSharedPointer<CMValueNode> field;
        TarnValue value;
        char const* message;
    } const cases[] = {
        {user, text(QString()), "\"User name\" needs a text"},
        {user, TarnValue(), "\"User name\" needs a value"},
        {country, text(QStringLiteral("xx")), "\"Country:\" takes one of its options, not \"xx\""},
        {country, TarnValue().setBool_(true), "\"Country:\" takes one of its options, not \"\""},
    };
    for (auto const& c : cases) {
        TarnValue const before = c.field->value();
        CMError const error = setValue(c.field->path(), c.value).error();
        EXPECT_EQ(error.name(), CMError::InvalidArgumentName()) << c.message;
        EXPECT_EQ(error.messageText(), QString::fromUtf8(c.message));
        EXPECT_EQ(c.field->value(), before) << c.message;
    }
    EXPECT_EQ(changes.count(), 1); // the direct setValue above, nothing refused

    // A required password is not held to a length: the rule is the form's.
    EXPECT_FALSE(setValue(password->path(), text(QString())).hasError());
    password->setReadOnly(true);
    EXPECT_EQ(setValue(password->path(), text(QStringLiteral("x"))).error().name(), QStringLiteral("readOnly"));
}

TEST(EditRules, validateAcceptsOrEmptiesTheValue)
{
    QString const threeFaces = QString::fromUtf8("\xF0\x9F\x98\x80\xF0\x9F\x98\x80\xF0\x9F\x98\x80");
    struct Case
    {
        char const* what;
        TarnEdit edit;
        TarnValue value;
        bool accepted;
    } const cases[] = {
        {"no rules, no value", TarnEdit(), TarnValue(), false},
        {"no rules, empty text", TarnEdit(), text(QString()), true},
        {"required, empty", TarnEdit().setMinLength(1), text(QString()), false},
        {"required, no text at all", TarnEdit().setMinLength(1), TarnValue().setBool_(true), false},
        {"required, one letter", TarnEdit().setMinLength(1), text(QStringLiteral("a")), true},
        {"minimum counts characters", TarnEdit().setMinLength(3), text(threeFaces), true},
        {"not UTF-16 units", TarnEdit().setMinLength(4), text(threeFaces), false},
        {"password, empty", TarnEdit().setPassword(true), text(QString()), true},
        {"an option", TarnEdit().setEnumValues({"de", "fr"}), text(QStringLiteral("fr")), true},
        {"not an option", TarnEdit().setEnumValues({"de", "fr"}), text(QStringLiteral("FR")), false},
        {"no options at all", TarnEdit().setEnumValues({}), text(QString()), false},
        {"options not known", TarnEdit().setType(TarnEditType::Select).setEnumPath(CMPath(QStringLiteral("x:"), "e")),
         text(QStringLiteral("any")), true},
    };
    for (auto const& c : cases) {
        TarnValue const result = CMEdit::validate(TarnValue(), c.value, c.edit, CMPath());
        EXPECT_EQ(!result.isEmpty(), c.accepted) << c.what;
        if (c.accepted) {
            EXPECT_EQ(result, c.value) << c.what;
        }
    }
}

TEST_F(DialogNodes, closeEventSendsTheWatchersOfTheDialogToTheTarget)
{
    CMPath const target = worker.addPrefix(QStringLiteral("http://cloud/home"));
    CMRowsWatch watch(form->path());
    CMRowsWatch bystander(options->path());
    QSignalSpy changes(&watch, &CMRowsWatch::changed);
    QSignalSpy untouched(&bystander, &CMRowsWatch::changed);
    QSignalSpy closed(worker.nodes(), &CMNodes::rowsClosed);

    form->sendCloseEvent(target);

    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes.at(0).at(0).toString(), CMSubscribe::RowsChangeClose());
    EXPECT_EQ(changes.at(0).at(1).toInt(), -1);
    EXPECT_EQ(untouched.count(), 0);
    ASSERT_EQ(closed.count(), 1);
    EXPECT_EQ(closed.at(0).at(0).value<CMPath>(), form->path());
    EXPECT_EQ(closed.at(0).at(1).value<CMPath>(), target);

    // A client that reads the closed dialog again is sent on.
    TarnRowsRoles const again = rows(form->path(), 0, 9).value();
    ASSERT_TRUE(again.hasRowsRedirect());
    EXPECT_EQ(again.rowsRedirect(), target);
    EXPECT_TRUE(again.rows().isEmpty());

    // Without a target only the view closes; the rows stay.
    options->sendCloseEvent(CMPath());
    EXPECT_EQ(untouched.count(), 1);
    EXPECT_FALSE(rows(options->path(), 0, 9).value().hasRowsRedirect());
}

TEST_F(DialogNodes, releasedNodesLeaveTheTreeAtOnce)
{
    QPointer<CMValueNode> const gone = password.data();
    CMPath const path = password->path();
    password.reset();

    EXPECT_EQ(data(path, {TarnRoles::Title()}).error().name(), QStringLiteral("notFound"));
    EXPECT_EQ(setValue(path, text(QStringLiteral("x"))).error().name(), QStringLiteral("notFound"));
    TarnRowsRoles const page = rows(form->path(), 0, 9).value();
    EXPECT_EQ(page.rowsCount(), 5);
    QVariantList const row = page.rows().at(1).toList();
    EXPECT_FALSE(row.at(0).isValid());
    EXPECT_EQ(CMPath::fromEncoded(row.at(4).toString()), path);

    EXPECT_FALSE(gone.isNull());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(gone.isNull());
}

TEST(DialogTree, aReleasedNodeIsFreedWithTheTreeWhenNoEventLoopRunsAgain)
{
    auto* nodes = new CMNodes;
    QPointer<CMUINode> const note = CMUINode::create(nodes, CMPath(QStringLiteral("t:"), QStringLiteral("text")));
    note->deleteLater();
    delete nodes;
    EXPECT_TRUE(note.isNull());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
