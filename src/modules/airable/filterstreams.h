#pragma once

#include "StreamItem.h"
#include "tarnvalue.h"

#include <QVector>

// Keeps the streams at or below maxBitrate, best first; when all are above
// it, the one of lowest bitrate stays, so an item never loses every stream.
void filterStreams(QVector<portable::SmartPointer<airable::StreamItem>>* streams,
                   TarnAirableStreamBitrate::Enum maxBitrate);
