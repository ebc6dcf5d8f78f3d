#include "cmroot.h"
#include "cmvalueitem.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QThread>
#include <gtest/gtest.h>

namespace {
CMPath valuePath(char const* name)
{
    return CMPath(QStringLiteral("settings:"), QString::fromLatin1(name));
}
TarnValue text(char const* s)
{
    return TarnValue().setString_(QString::fromLatin1(s));
}
} // namespace

TEST(Values, watcherGetsTheCurrentValueFirstThenEachChange)
{
    auto* root = CMRootWorker::instance();
    root->putValue(valuePath("lang"), text("en_US"));
    CMValueItem item(nullptr, valuePath("lang"));
    QStringList seen;
    QObject::connect(&item, &CMValueItem::changed,
                     [&](TarnValue const& v, TarnValue const&) { seen << v.string_(); });
    EXPECT_TRUE(seen.isEmpty()); // not before the creator could connect
    QCoreApplication::processEvents();
    root->putValue(valuePath("lang"), text("de_DE"));
    root->putValue(valuePath("other"), text("x"));
    root->putValue(valuePath("lang"), text("de_DE")); // unchanged: no signal
    QCoreApplication::processEvents();
    EXPECT_EQ(seen, (QStringList{QStringLiteral("en_US"), QStringLiteral("de_DE")}));
}

TEST(Values, watcherOnAnotherThreadGetsValuesThere)
{
    auto* root = CMRootWorker::instance();
    root->putValue(valuePath("mac"), text("00:11"));
    QThread thread;
    thread.start();
    CMValueItem* item = nullptr;
    QStringList seen;
    QThread* seenOn = nullptr;
    auto* anchor = new QObject;
    anchor->moveToThread(&thread);
    QMetaObject::invokeMethod(anchor, [&] {
        item = new CMValueItem(nullptr, valuePath("mac"));
        QObject::connect(item, &CMValueItem::changed, [&](TarnValue const& v, TarnValue const&) {
            seen << v.string_();
            seenOn = QThread::currentThread();
        });
    }, Qt::BlockingQueuedConnection);
    root->putValue(valuePath("mac"), text("22:33"));
    QMetaObject::invokeMethod(anchor, [] {}, Qt::BlockingQueuedConnection); // drain
    QMetaObject::invokeMethod(anchor, [&] { delete item; }, Qt::BlockingQueuedConnection);
    anchor->deleteLater();
    thread.quit();
    thread.wait();
    EXPECT_EQ(seen, (QStringList{QStringLiteral("00:11"), QStringLiteral("22:33")}));
    EXPECT_EQ(seenOn, &thread);
}

TEST(Values, rootAnswersValuesActionsAndUnknownPaths)
{
    auto* root = CMRootWorker::instance();
    EXPECT_FALSE(root->getValue(valuePath("missing")).isValid());
    EXPECT_TRUE(TarnValue::fromVariant(root->getValue(valuePath("missing"))).string_().isEmpty());

    CMReply<QVariant> set;
    CMRoot()->setValue(valuePath("flag"), TarnValue().setBool_(true), set);
    EXPECT_TRUE(set.isFinished());
    EXPECT_TRUE(TarnValue::fromVariant(root->getValue(valuePath("flag"))).bool_());

    TarnHash received;
    root->setAction(CMPath(QStringLiteral("notification:"), QStringLiteral("open")),
                    [&](TarnHash const& args, CMReply<QVariant> const& reply) {
                        received = args;
                        reply.setValue(true);
                    });
    CMReply<QVariant> invoked;
    CMRoot()->invoke(CMPath(QStringLiteral("notification:"), QStringLiteral("open")),
                     TarnValue().setString_(QStringLiteral("hi")), invoked);
    EXPECT_EQ(TarnValue(received).string_(), QStringLiteral("hi"));
    EXPECT_TRUE(invoked.value().toBool());

    CMReply<QVariant> missing;
    CMRoot()->invoke(CMPath(QStringLiteral("nothing:"), QString()), TarnHash(), missing);
    EXPECT_EQ(missing.error().name(), QStringLiteral("notFound"));

    CMGetRowsRequest rows(CMPath(QStringLiteral("nobody:"), QStringLiteral("x")), 0, 1, -1, {});
    root->request(rows);
    EXPECT_TRUE(rows.reply().error().messageText().contains(QStringLiteral("nobody:x")));

    CMGetDataRequest data(valuePath("flag"), {TarnRoles::Value(), TarnRoles::Title()});
    root->request(data);
    EXPECT_TRUE(TarnValue::fromVariant(data.reply().value().value(0)).bool_());
    EXPECT_FALSE(data.reply().value().value(1).isValid());
}
