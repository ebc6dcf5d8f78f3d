#pragma once

#include "cmrequest.h"

#include <QStringList>
#include <functional>

// Reads rows of a listing the way a device's interface does: it opens the
// listing at row 0, so that the content module learns the listing's pages,
// then asks on from where the rows it got end, page after page, until the
// range is full or the listing ends. A content module answers a range with
// the rows of one page at most, so one request is not enough.
class ListingReader
{
public:
    // Sends nothing; waits for one reply. False when the reply brought no
    // value, the caller having said why.
    using Await = std::function<bool(CMVoidReply const&)>;

    enum class Status
    {
        Ok,
        Failed,
        RedirectLoop,
    };

    struct Rows
    {
        CMPath path;       // the listing's path, after redirects
        CMPath redirect;   // the last redirect's target, if any
        int count = 0;     // the listing's total number of rows
        TarnRoles roles;   // the listing's own roles
        QVariantList rows; // rows from the range's first on, in order
    };

    ListingReader(Await await, int pageSize);

    // Opens path and reads rows from to to (inclusive, 0 <= from <= to).
    // Redirects are followed, or with follow false the first one ends the
    // read, with no rows.
    Status open(CMPath const& path, qint64 from, qint64 to, QStringList const& roles, bool follow, Rows* out) const;
    // Reads more rows of a listing opened before; out holds what is known
    // of it (path, count, roles) and gets the rows.
    Status read(qint64 from, qint64 to, QStringList const& roles, Rows* out) const;

    static int const kMaxRedirects = 8;

private:
    bool fetch(CMPath const& path, qint64 from, qint64 to, QStringList const& roles, TarnRowsRoles* answer) const;

    Await mAwait;
    int mPageSize;
};
