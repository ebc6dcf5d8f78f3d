#include "listingreader.h"

#include "tarnclient.h"

ListingReader::ListingReader(Await await, int pageSize) : mAwait(std::move(await)), mPageSize(pageSize) {}

bool ListingReader::fetch(CMPath const& path, qint64 from, qint64 to, QStringList const& roles,
                          TarnRowsRoles* answer) const
{
    auto const reply = TarnClient::rows(path, int(from), int(to), roles);
    if (!mAwait(reply))
        return false;
    *answer = reply.value();
    return true;
}

ListingReader::Status ListingReader::open(CMPath const& path, qint64 from, qint64 to, QStringList const& roles,
                                          bool follow, Rows* out) const
{
    *out = Rows();
    out->path = path;
    TarnRowsRoles answer;
    for (int redirects = 0;; ++redirects) {
        if (!fetch(out->path, 0, qMin(to, qint64(mPageSize) - 1), roles, &answer))
            return Status::Failed;
        if (!answer.hasRowsRedirect())
            break;
        out->redirect = answer.rowsRedirect();
        if (!follow)
            return Status::Ok;
        if (redirects == kMaxRedirects)
            return Status::RedirectLoop;
        out->path = answer.rowsRedirect();
    }
    out->count = answer.rowsCount();
    out->roles = answer.roles();
    QVariantList const first = answer.rows();
    for (qint64 row = from; row < first.size() && row <= to; ++row)
        out->rows << first.at(int(row));
    if (first.isEmpty())
        return Status::Ok;
    Rows more = *out;
    Status const status = read(qMax(from, qint64(first.size())), to, roles, &more);
    out->count = more.count;
    out->rows << more.rows;
    return status;
}

ListingReader::Status ListingReader::read(qint64 from, qint64 to, QStringList const& roles, Rows* out) const
{
    out->rows.clear();
    qint64 next = from;
    while (next <= to && next < out->count) {
        TarnRowsRoles answer;
        if (!fetch(out->path, next, qMin(to, qint64(out->count) - 1), roles, &answer))
            return Status::Failed;
        QVariantList const rows = answer.rows();
        // A listing that turned into a redirect or shrank under us ends here.
        if (answer.hasRowsRedirect() || rows.isEmpty())
            break;
        out->count = answer.rowsCount();
        for (int i = 0; i < rows.size() && next <= to; ++i, ++next)
            out->rows << rows.at(i);
    }
    return Status::Ok;
}
