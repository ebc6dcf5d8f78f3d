#include "cmnode.h"
#include "cmroot.h"
#include "tarnactionreply.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <gtest/gtest.h>

namespace {

CMPath at(QString const& base)
{
    return CMPath(QStringLiteral("test:"), base);
}

QStringList const kRoles{TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Path()};

} // namespace

TEST(Nodes, listRowsNodeAnswersAPageOfNodeAndPlainRows)
{
    CMNodes nodes;
    auto* list = CMListRowsNode::create(&nodes, at(QStringLiteral("list")));
    list->setTitle(TrString("Login"));
    auto* button = CMActivateNode::create(&nodes, at(QStringLiteral("list:ok")));
    button->setTitle(TrString("OK"));
    list->rowsAppend(TarnRoles().setTitle(TrString("first")).setType(TarnRolesType::Text()));
    list->rowsAppend(button->path());
    list->rowsAppend(TarnRoles().setTitle(TrString("third")));

    CMGetRowsRequest request(at(QStringLiteral("list")), 1, 5, -1, kRoles);
    nodes.request(request);
    ASSERT_TRUE(request.reply().isFinished());
    TarnRowsRoles const answer = request.reply().value();
    EXPECT_EQ(answer.rowsCount(), 3);
    ASSERT_EQ(answer.rows().size(), 2);
    QVariantList const row = answer.rows().at(0).toList();
    EXPECT_EQ(row.at(0).value<TrString>().toString(), QStringLiteral("OK"));
    EXPECT_EQ(row.at(1).toString(), TarnRolesType::Action());
    EXPECT_EQ(CMPath::fromEncoded(row.at(2).toString()), button->path());
    EXPECT_EQ(answer.roles().title().toString(), QStringLiteral("Login"));
}

TEST(Nodes, redirectNodeSendsTheClientToItsTarget)
{
    CMNodes nodes;
    CMRedirectRowsNode::create(&nodes, at(QStringLiteral("svc")), at(QStringLiteral("http://cloud/x")));
    CMGetRowsRequest request(at(QStringLiteral("svc")), 0, 9, -1, kRoles);
    nodes.request(request);
    TarnRowsRoles const answer = request.reply().value();
    EXPECT_TRUE(answer.hasRowsRedirect());
    EXPECT_EQ(answer.rowsRedirect(), at(QStringLiteral("http://cloud/x")));
    EXPECT_TRUE(answer.rows().isEmpty());
}

TEST(Nodes, activateNodeHandsTheRequestToItsListener)
{
    CMNodes nodes;
    auto* button = CMActivateNode::create(&nodes, at(QStringLiteral("msg1:0")));
    CMSetDataRequest unheard(button->path(), TarnRoles::Activate(), true);
    nodes.request(unheard);
    EXPECT_TRUE(unheard.reply().isFinished());
    EXPECT_FALSE(unheard.reply().hasError());

    CMPath seen;
    QObject::connect(button, &CMActivateNode::activated, [&](CMSetDataRequest const& r) {
        seen = r.path();
        r.reply().setValue(QStringLiteral("done"));
    });
    CMSetDataRequest heard(button->path(), TarnRoles::Activate(), true);
    nodes.request(heard);
    EXPECT_EQ(seen, button->path());
    EXPECT_EQ(heard.reply().value().toString(), QStringLiteral("done"));
}

TEST(Nodes, unknownPathAndReleasedNodeGetAClearError)
{
    CMNodes nodes;
    auto* node = CMUINode::create(&nodes, at(QStringLiteral("gone")));
    EXPECT_TRUE(nodes.contains(node->path()));
    node->deleteLater();
    EXPECT_FALSE(nodes.contains(at(QStringLiteral("gone"))));
    CMGetDataRequest request(at(QStringLiteral("gone")), kRoles);
    nodes.request(request);
    EXPECT_EQ(request.reply().error().name(), QStringLiteral("notFound"));
    EXPECT_TRUE(request.reply().error().messageText().contains(QStringLiteral("test:gone")));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST(Nodes, requestFromAnotherThreadIsAnsweredOnTheTreesThread)
{
    CMNodes nodes;
    auto* node = CMUINode::create(&nodes, at(QStringLiteral("ui")));
    node->setTitle(TrString("Title"));
    CMGetDataRequest request(node->path(), {TarnRoles::Title()});
    QThread* client = QThread::create([&] { nodes.request(request); });
    client->start();
    client->wait();
    delete client;
    EXPECT_FALSE(request.reply().isFinished());
    QCoreApplication::processEvents();
    ASSERT_TRUE(request.reply().isFinished());
    EXPECT_EQ(request.reply().value().value(0).value<TrString>().toString(), QStringLiteral("Title"));
}

TEST(Nodes, unusedNodeTimerRemovesAnIdleNodeButSparesAWatchedOne)
{
    CMNodes nodes;
    auto* idle = CMUINode::create(&nodes, at(QStringLiteral("idle")));
    auto* watched = CMUINode::create(&nodes, at(QStringLiteral("watched")));
    new CMUnusedNodeTimer(idle, 30);
    new CMUnusedNodeTimer(watched, 30);
    nodes.subscribe()->addWatcher(watched->path());

    QElapsedTimer t;
    t.start();
    while (t.elapsed() < 200) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_FALSE(nodes.contains(at(QStringLiteral("idle"))));
    EXPECT_TRUE(nodes.contains(at(QStringLiteral("watched"))));
}
