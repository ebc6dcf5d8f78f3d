#include "tarnplaylogicdata.h"

#include "cmpath.h"
#include "tarnplaylogicrecords.h"
#include "tarnword.h"

TARN_WORD(TarnPlaylogicErrorName::TarnPlaylogicUserStop, "userStop")
TARN_WORD(TarnPlaylogicErrorName::TarnPlaylogicStreamFailed, "streamFailed")
TARN_WORD(TarnPlaylogicErrorName::TarnPlaylogicPrepareFailed, "prepareFailed")
TARN_WORD(TarnPlayLogicData::StreamId, "streamId")

TarnPlayLogicData& TarnPlayLogicData::setControls(TarnHash const& controls)
{
    insert(TarnPlayLogicDataKey::Controls(), controls.__variant());
    return *this;
}

TarnHash TarnPlayLogicData::controls() const
{
    return TarnHash(value(TarnPlayLogicDataKey::Controls()).toHash());
}

TarnPlayLogicData& TarnPlayLogicData::setContextPath(CMPath const& path)
{
    insert(TarnPlayLogicDataKey::ContextPath(), path.toEncoded());
    return *this;
}

CMPath TarnPlayLogicData::contextPath() const
{
    return CMPath::fromEncoded(value(TarnPlayLogicDataKey::ContextPath()).toString());
}

QString TarnPlayLogicData::stateName(int state)
{
    switch (state) {
    case Preparing:
        return QStringLiteral("preparing");
    case Playing:
        return QStringLiteral("playing");
    case Paused:
        return QStringLiteral("paused");
    default:
        return QStringLiteral("stopped");
    }
}
