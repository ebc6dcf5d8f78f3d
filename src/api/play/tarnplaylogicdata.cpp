#include "tarnplaylogicdata.h"
#include "tarnword.h"

TARN_WORD(TarnPlaylogicErrorName::TarnPlaylogicUserStop, "userStop")
TARN_WORD(TarnPlaylogicErrorName::TarnPlaylogicStreamFailed, "streamFailed")
TARN_WORD(TarnPlaylogicErrorName::TarnPlaylogicPrepareFailed, "prepareFailed")
TARN_WORD(TarnPlayLogicData::StreamId, "streamId")
