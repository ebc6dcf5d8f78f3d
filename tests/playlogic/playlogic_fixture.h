#pragma once

#include "cmroot.h"
#include "patience.h"
#include "testplayer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <gtest/gtest.h>

// Serves events until the condition holds; false when it never does.
template <typename Condition>
bool waitUntil(Condition condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > kPatienceMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return true;
}

inline CMReply<QVariant> finished(CMReply<QVariant> const& reply)
{
    EXPECT_TRUE(waitUntil([&] { return reply.isFinished(); }));
    return reply;
}

inline TarnPlayLogicControls controlsOf(TarnPlayLogicData const& data)
{
    return TarnPlayLogicControls(data.value(TarnPlayLogicDataKey::Controls()).toHash());
}

// A list play logic in a worker's tree, three tracks of 20 s, used as a
// client uses it: requests on its path through the root.
class PlayLogicTest : public ::testing::Test
{
protected:
    PlayLogicTest()
    {
        CMRootWorker::instance()->addWorker(&worker);
        logic = new ListPlayLogic(worker.nodes(), path, {track("t0", 20000), track("t1", 20000), track("t2", 20000)});
        logic->setStreamer(&streamer);
    }
    ~PlayLogicTest() override { CMRootWorker::instance()->removeWorker(&worker); }

    CMReply<QVariant> send(QString const& role, QVariant const& value = QVariant()) const
    {
        CMSetDataRequest const request(path, role, value);
        CMRoot()->request(request);
        return request.reply();
    }

    CMReply<QVariant> play() const
    {
        return send(TarnPlayLogicRoles::Play(),
                    TarnPlayLogicPlayArgs().setMediaRoles(TarnRoles().setId(QStringLiteral("program"))).__variant());
    }

    TarnPlayLogicData published() const
    {
        CMGetDataRequest const request(path, {TarnRoles::Value()});
        CMRoot()->request(request);
        EXPECT_TRUE(waitUntil([&] { return request.reply().isFinished(); }));
        return TarnPlayLogicData(request.reply().value().value(0).toHash());
    }

    bool publishedIs(QString const& id, int state) const
    {
        return waitUntil([&] { return published().trackRoles().id() == id && published().state() == state; });
    }

    // Declared first: the play logic, which goes with the worker, holds it.
    VirtualStreamer streamer;
    CMNodesWorker worker{{{QStringLiteral("prefix"), QStringLiteral("listplay:")}}, QStringLiteral("ListPlay")};
    CMPath const path = worker.addPrefix(QStringLiteral("program"));
    ListPlayLogic* logic = nullptr;
};
