#include "cloudear.h"

#include "cloudserver.h"

#include <QUrl>

QStringList CloudEar::callsAfter(QString const& streamUrl) const
{
    if (!mCloud)
        return {};
    QString const stream = QUrl(streamUrl).path();
    QList<cloudsim::RequestRecord> const log = mCloud->requestLog();
    int last = log.size() - 1;
    while (last >= 0 && log[last].path != stream)
        --last;
    if (last < 0)
        return {};
    QStringList calls;
    for (int i = last + 1; i < log.size(); ++i) {
        if (log[i].path == QLatin1String("/authentication"))
            continue;
        calls << (log[i].query.isEmpty() ? log[i].path : log[i].path + QLatin1Char('?') + log[i].query);
    }
    return calls;
}

void CloudEar::listen(std::function<void(QString const& word)> heard) const
{
    if (!mCloud)
        return;
    if (!heard) {
        mCloud->setEventListener(nullptr);
        return;
    }
    mCloud->setEventListener([heard = std::move(heard)](cloudsim::PlaybackEvent const& event) { heard(event.word); });
}
