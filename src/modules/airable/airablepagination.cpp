#include "airablepagination.h"

AirablePagination::AirablePagination(QString const& url, QString const& replace, int count)
    : m_url(url), m_replace(replace), m_count(count)
{
    // The cloud writes spaces in templates as "+", which a URL path would
    // keep literally.
    m_url.replace(QLatin1Char('+'), QStringLiteral("%20"));
}

QString AirablePagination::getUrlForPage(int page) const
{
    return QString(m_url).replace(m_replace, QString::number(page), Qt::CaseSensitive);
}
