#pragma once

#include <QDateTime>
#include <QString>

namespace cloudsim {

// One call of an event URL that a stream's redirect handed out.
struct PlaybackEvent
{
    QString word;   // "start", "pause", "stop" or "error"
    QString stream; // the stream's id, as its event URLs name it
    QString device;
    QDateTime time;
};

} // namespace cloudsim
