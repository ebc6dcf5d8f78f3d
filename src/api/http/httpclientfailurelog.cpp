#include "httpclientfailurelog.h"

#include <QMutex>
#include <QMutexLocker>

namespace HttpClientFailureLog {

namespace {

// A command waits for a few requests at a time; more failures than this
// within one wait say the same thing again.
constexpr int Kept = 16;

struct Log
{
    QMutex mutex;
    quint64 recorded = 0;
    QList<HttpClientResult> latest;
};

Log& log()
{
    static Log instance;
    return instance;
}

} // namespace

quint64 mark()
{
    QMutexLocker lock(&log().mutex);
    return log().recorded;
}

QList<HttpClientResult> since(quint64 mark)
{
    QMutexLocker lock(&log().mutex);
    quint64 const newer = log().recorded > mark ? log().recorded - mark : 0;
    int const count = int(qMin<quint64>(newer, quint64(log().latest.size())));
    return log().latest.mid(log().latest.size() - count);
}

void record(HttpClientResult const& failure)
{
    QMutexLocker lock(&log().mutex);
    ++log().recorded;
    log().latest.append(failure);
    while (log().latest.size() > Kept)
        log().latest.removeFirst();
}

} // namespace HttpClientFailureLog
