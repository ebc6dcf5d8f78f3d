#pragma once

#include <QStringList>

namespace cloudsim {
class CloudServer;
}

// What the simulated cloud in this process heard, for showing the calls
// the module made on the user's behalf. A cloud elsewhere can't be heard.
class CloudEar
{
public:
    // cloud: the in-process cloud, or null when the cloud is elsewhere.
    explicit CloudEar(cloudsim::CloudServer const* cloud = nullptr) : mCloud(cloud) {}

    bool hears() const { return mCloud != nullptr; }

    // The calls the cloud heard after the last call to streamUrl, as path
    // and query: while a stream plays, those are the reports of what the
    // player did. The device's authentication is left out, since it may
    // precede any call.
    QStringList callsAfter(QString const& streamUrl) const;

    // The number of event calls heard so far, as a mark; and the words of
    // those heard after a mark ("start", "pause", "stop", "error").
    int eventMark() const;
    QStringList eventsAfter(int mark) const;

private:
    cloudsim::CloudServer const* mCloud;
};
