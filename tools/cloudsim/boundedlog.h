#pragma once

#include <QList>
#include <QString>

namespace cloudsim {

// About the memory a text holds: its UTF-16 characters, and the string's
// header and the allocator's bookkeeping beside them.
inline qint64 textFootprint(QString const& text)
{
    return text.isEmpty() ? 0 : 32 + 2 * qint64(text.size());
}

// The latest entries of a log, oldest first, within a number of entries and
// a number of bytes of memory, whichever is reached first: a cloud that runs
// for days keeps logs of a size fixed beforehand, however much its requests
// carry. Footprint tells the memory of an entry. Not safe to share between
// threads: its owner locks.
template <typename Entry, qint64 (*Footprint)(Entry const&)>
class BoundedLog
{
public:
    BoundedLog(int maxEntries, qint64 maxBytes) : mMaxEntries(qMax(maxEntries, 0)), mMaxBytes(qMax<qint64>(maxBytes, 0))
    {
    }

    void append(Entry const& entry)
    {
        mEntries.append(entry);
        mBytes += Footprint(entry);
        // A QList takes its first element off without moving the others.
        while (!mEntries.isEmpty() && (mEntries.size() > mMaxEntries || mBytes > mMaxBytes))
            mBytes -= Footprint(mEntries.takeFirst());
    }

    QList<Entry> const& entries() const { return mEntries; }

    void clear()
    {
        mEntries.clear();
        mBytes = 0;
    }

private:
    int const mMaxEntries;
    qint64 const mMaxBytes;
    QList<Entry> mEntries;
    qint64 mBytes = 0;
};

} // namespace cloudsim
