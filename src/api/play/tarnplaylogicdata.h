#pragma once

#include "tarnroles.h"

// Error names a player reports beside its state.
namespace TarnPlaylogicErrorName {
// The user stopped playback; not a failure of the stream.
QString const& TarnPlaylogicUserStop();
// The stream could not be opened or broke off.
QString const& TarnPlaylogicStreamFailed();
// Nothing playable came back for the item.
QString const& TarnPlaylogicPrepareFailed();
}

// What a player reports about itself: the track it holds, its state, the
// stream it plays and, after a failure, the error's name.
class TarnPlayLogicData : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnPlayLogicData() = default;
    TarnPlayLogicData(TarnHash const& h) : TarnHash(h) {}

    // Player states.
    enum State : int {
        Stopped = 0, // also after a failure
        Preparing = 1,
        Playing = 2,
        Paused = 3,
    };

    static QString const& StreamId();
    // The state's word as people read it: "preparing", "playing", "paused", "stopped".
    static QString stateName(int state);

    TarnPlayLogicData& setTrackRoles(TarnRoles const& r) { insert(QStringLiteral("trackRoles"), r.__variant()); return *this; }
    TarnRoles trackRoles() const { return TarnRoles(value(QStringLiteral("trackRoles")).toHash()); }
    TarnPlayLogicData& setState(int s) { insert(QStringLiteral("state"), s); return *this; }
    int state() const { return value(QStringLiteral("state")).toInt(); }
    TarnPlayLogicData& setStreamId(int id) { insert(StreamId(), id); return *this; }
    int streamId() const { return value(StreamId()).toInt(); }
    TarnPlayLogicData& setError(QString const& name) { insert(QStringLiteral("error"), name); return *this; }
    QString error() const { return value(QStringLiteral("error")).toString(); }
    // What the play logic offers for what plays, and where its context is.
    TarnPlayLogicData& setControls(TarnHash const& controls);
    TarnHash controls() const;
    TarnPlayLogicData& setContextPath(CMPath const& path);
    CMPath contextPath() const;
    TarnPlayLogicData& setPositionMs(qint64 ms) { insert(QStringLiteral("positionMs"), ms); return *this; }
    qint64 positionMs() const { return value(QStringLiteral("positionMs")).toLongLong(); }
};

Q_DECLARE_METATYPE(TarnPlayLogicData)
