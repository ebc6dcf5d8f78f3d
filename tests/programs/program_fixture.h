#pragma once

#include "../play/play_fixture.h"
#include "airableprogramplayLogic.h"
#include "cmroot.h"
#include "tarnplaylogicrecords.h"
#include "testplayer.h"

// The module's program play logic on the worker's thread, played by a
// streamer in virtual time, against programs of the test's documents.
class ProgramPlay : public Play
{
protected:
    void SetUp() override
    {
        Play::SetUp();
        CMRootWorker::instance()->putValue(TarnAirableDeezerSignUpLinkPath(),
                                           TarnValue().setString_(QStringLiteral("https://signup.example/deezer")));
        playLogic = probe->programPlayLogic();
        ASSERT_NE(playLogic, nullptr);
        probe->onWorker([this](CMAirableWorker*) { playLogic->setStreamer(&streamer); });
    }
    void TearDown() override
    {
        if (playLogic)
            probe->onWorker([this](CMAirableWorker*) { playLogic->setStreamer(nullptr); });
        Play::TearDown();
    }

    CMPath logic() const { return TarnAirableProgramPlayLogicPath(); }

    // What a client sends to play the program at this cloud path.
    QVariant playArgs(QString const& programPath) const
    {
        TarnRoles row;
        row.setPath(at(programPath));
        row.setMediaData(TarnMediaData().setMetaData(TarnMetaData().setPlayLogicPath(logic())));
        return TarnPlayLogicPlayArgs().setMediaRoles(row).__variant();
    }

    CMReply<QVariant> command(QString const& role, QVariant const& value = QVariant())
    {
        return set(logic(), value, role);
    }
    CMReply<QVariant> start(QString const& programPath)
    {
        return command(TarnPlayLogicRoles::Play(), playArgs(programPath));
    }

    TarnPlayLogicData published()
    {
        auto reply = TarnClient::data(logic(), {TarnRoles::Value()});
        EXPECT_TRUE(TarnClient::wait(reply, kPatienceMs));
        return TarnPlayLogicData(TarnHash(reply.value().value(0).toHash()));
    }
    std::string playing() { return published().trackRoles().title().toString().toStdString(); }

    VirtualStreamer streamer;
    AirableProgramPlayLogic* playLogic = nullptr;
};
