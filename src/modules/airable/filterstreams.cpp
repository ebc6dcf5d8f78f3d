#include "filterstreams.h"

#include <algorithm>

namespace {

int bitrateOf(portable::SmartPointer<airable::StreamItem> const& stream)
{
    return stream->codec()->bitrate();
}

} // namespace

void filterStreams(QVector<portable::SmartPointer<airable::StreamItem>>* streams,
                   TarnAirableStreamBitrate::Enum maxBitrate)
{
    streams->detach();
    // Equal bitrates keep no particular order: the player treats them alike.
    std::sort(streams->begin(), streams->end(),
              [](auto const& a, auto const& b) { return bitrateOf(a) > bitrateOf(b); });
    if (streams->size() < 2)
        return;
    // The last, lowest stream is never tested, so one always stays.
    for (int i = streams->size() - 2; i >= 0; --i) {
        if (int(maxBitrate) < bitrateOf(streams->at(i))) {
            streams->remove(0, i + 1);
            return;
        }
    }
}
