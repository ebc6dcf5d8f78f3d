#pragma once

#include <QString>

// How to fetch other pages of a listing: a URL template whose placeholder
// stands for the page number, and the listing's total count when first seen.
class AirablePagination
{
public:
    AirablePagination() = default;
    AirablePagination(QString const& url, QString const& replace, int count);

    QString getUrlForPage(int page) const;
    int count() const { return m_count; }

private:
    QString m_url;
    QString m_replace;
    int m_count = 0;
};
