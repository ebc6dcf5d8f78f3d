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

int CloudEar::eventMark() const
{
    return mCloud ? mCloud->eventLog().size() : 0;
}

QStringList CloudEar::eventsAfter(int mark) const
{
    if (!mCloud)
        return {};
    QStringList words;
    QList<cloudsim::PlaybackEvent> const log = mCloud->eventLog();
    for (int i = qMax(0, mark); i < log.size(); ++i)
        words << log[i].word;
    return words;
}
