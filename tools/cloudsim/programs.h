#pragma once

#include "accounts.h"
#include "call.h"
#include "catalogue.h"
#include "skiplimits.h"

#include <QHash>
#include <QString>

#include <mutex>

namespace cloudsim {

// The services' programs, whose tracks the cloud decides as they are asked
// for, at the paths whose answer in the catalogue is one of these
// behaviours, and the tracks they hand out:
// - "deezer flow": the next batch of 5 tracks at each call, without end,
//   counted per device. A free account may skip so many tracks within a
//   window of time: its batches carry a skip object whose "url" ("deezer
//   skip") uses a skip and whose "status" ("deezer skip status") only tells
//   the count, both answering {"url","status","available"}; a premium
//   account has no skip object.
// - "amazon station": page N ("?p=N"), whose first track is the one to
//   play, with the next and the previous page in its pagination.
// Each track has its own URL, stream and redirect with event URLs, and
// rating actions "rate.positive", "rate.neutral" and "rate.negative" whose
// "active" flags tell the rating last given; rating Flow's third track is
// refused.
class Programs
{
public:
    Programs(Catalogue const& catalogue, Accounts const& accounts, SkipLimits& skips);

    // False for behaviours that are no program.
    bool answer(QString const& behaviour, Call const& call, Answer* out);
    // The tracks of the programs the catalogue has: their URLs, ids,
    // streams and ratings. False for other paths.
    bool answerTrack(Call const& call, Answer* out);

private:
    std::string flow(Call const& call);
    std::string skips(Call const& call, bool use);
    std::string stationPage(Call const& call);
    std::string rate(Call const& call, QString const& service, QString const& trackId, QString const& value);
    QString rating(QString const& listener, QString const& trackId) const;

    Catalogue const& mCatalogue;
    Accounts const& mAccounts;
    SkipLimits& mSkips;
    mutable std::mutex mMutex;
    QHash<QString, int> mNextFlowTrack;
    QHash<QString, QString> mRatings;
};

} // namespace cloudsim
