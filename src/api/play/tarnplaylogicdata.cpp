#include "tarnplaylogicdata.h"

#define TARN_PLAY_WORD(scope, name, text)             \
    QString const& scope::name()                      \
    {                                                 \
        static QString const s(QStringLiteral(text)); \
        return s;                                     \
    }

TARN_PLAY_WORD(TarnPlaylogicErrorName, TarnPlaylogicUserStop, "userStop")
TARN_PLAY_WORD(TarnPlaylogicErrorName, TarnPlaylogicStreamFailed, "streamFailed")
TARN_PLAY_WORD(TarnPlaylogicErrorName, TarnPlaylogicPrepareFailed, "prepareFailed")
TARN_PLAY_WORD(TarnPlayLogicData, StreamId, "streamId")
