#include "skiplimits.h"

#include <QDateTime>

namespace cloudsim {

SkipLimits::SkipLimits(int skipsPerWindow, int windowSeconds)
    : mSkips(qMax(skipsPerWindow, 0)), mWindowMs(qMax(windowSeconds, 0) * 1000)
{
}

void SkipLimits::forgetOld(QList<qint64>* used, qint64 now) const
{
    while (!used->isEmpty() && used->first() <= now - mWindowMs)
        used->removeFirst();
}

int SkipLimits::available(QString const& user)
{
    std::lock_guard<std::mutex> lock(mMutex);
    QList<qint64>& used = mUsed[user];
    forgetOld(&used, QDateTime::currentMSecsSinceEpoch());
    return qMax(mSkips - used.size(), 0);
}

int SkipLimits::use(QString const& user)
{
    std::lock_guard<std::mutex> lock(mMutex);
    qint64 const now = QDateTime::currentMSecsSinceEpoch();
    QList<qint64>& used = mUsed[user];
    forgetOld(&used, now);
    if (used.size() < mSkips)
        used.append(now);
    return qMax(mSkips - used.size(), 0);
}

} // namespace cloudsim
