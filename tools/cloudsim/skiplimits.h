#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <mutex>

namespace cloudsim {

// How many tracks of a program a free account may skip: so many within a
// sliding window of time, counted per user. Safe to use from any thread.
class SkipLimits
{
public:
    SkipLimits(int skipsPerWindow, int windowSeconds);

    int available(QString const& user);
    // Uses one skip, if one is left; the skips left afterwards.
    int use(QString const& user);

private:
    void forgetOld(QList<qint64>* used, qint64 now) const;

    int const mSkips;
    int const mWindowMs;
    std::mutex mMutex;
    QHash<QString, QList<qint64>> mUsed;
};

} // namespace cloudsim
