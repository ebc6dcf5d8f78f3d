#include "tarnplaylogicrecords.h"
#include "controlqueue.h"
#include "tarnplaylogicdata.h"
#include "tarnword.h"

TARN_WORD(TarnPlayLogicRoles::Play, "play")
TARN_WORD(TarnPlayLogicRoles::Stop, "stop")
TARN_WORD(TarnPlayLogicRoles::Pause, "pause")
TARN_WORD(TarnPlayLogicRoles::Next, "next")
TARN_WORD(TarnPlayLogicRoles::Previous, "previous")
TARN_WORD(TarnPlayLogicRoles::Like, "like")
TARN_WORD(TarnPlayLogicRoles::Dislike, "dislike")
TARN_WORD(TarnPlayLogicRoles::SeekTime, "seekTime")
TARN_WORD(TarnPlayLogicRoles::PlayMode, "playMode")

TARN_WORD(TarnPlayMode::Normal, "normal")
TARN_WORD(TarnPlayMode::Shuffle, "shuffle")
TARN_WORD(TarnPlayMode::RepeatOne, "repeatOne")
TARN_WORD(TarnPlayMode::RepeatAll, "repeatAll")

TARN_WORD(TarnPlayLogicDataKey::Controls, "controls")
TARN_WORD(TarnPlayLogicDataKey::ContextPath, "contextPath")
TARN_WORD(TarnPlayLogicDataKey::PlayMode, "playMode")

void tarnPlayRegisterMetaTypes()
{
    static bool const done = [] {
        qRegisterMetaType<TarnPlayLogicData>("TarnPlayLogicData");
        qRegisterMetaType<TarnPlayLogicControls>("TarnPlayLogicControls");
        qRegisterMetaType<TarnPlayLogicPlayArgs>("TarnPlayLogicPlayArgs");
        qRegisterMetaType<TarnRating>("TarnRating");
        qRegisterMetaType<ControlQueue::ControlCommand>("ControlQueue::ControlCommand");
        return true;
    }();
    Q_UNUSED(done)
}
