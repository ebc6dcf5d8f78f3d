#pragma once

#include <QStringList>

#include <functional>

namespace cloudsim {
class CloudServer;
}

// What the simulated cloud in this process heard, for showing the calls
// the module made on the user's behalf. A cloud elsewhere can't be heard.
class CloudEar
{
public:
    // cloud: the in-process cloud, or null when the cloud is elsewhere.
    explicit CloudEar(cloudsim::CloudServer* cloud = nullptr) : mCloud(cloud) {}

    bool hears() const { return mCloud != nullptr; }

    // The calls the cloud heard after the last call to streamUrl, as path
    // and query: while a stream plays, those are the reports of what the
    // player did. The device's authentication is left out, since it may
    // precede any call.
    QStringList callsAfter(QString const& streamUrl) const;

    // Calls `heard` with the word of each event call the cloud hears from
    // now on ("start", "pause", "stop", "error"), on the cloud's own thread;
    // null stops that, and once it returns no call is under way.
    void listen(std::function<void(QString const& word)> heard) const;

private:
    cloudsim::CloudServer* mCloud;
};
