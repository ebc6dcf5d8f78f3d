#include "httpclientoptions.h"

void HttpClientHeaders::insert(QString const& name, QString const& value)
{
    for (auto& item : mItems) {
        if (item.first.compare(name, Qt::CaseInsensitive) == 0) {
            item.second = value;
            return;
        }
    }
    mItems.append(qMakePair(name, value));
}

QString HttpClientHeaders::value(QString const& name) const
{
    for (auto const& item : mItems) {
        if (item.first.compare(name, Qt::CaseInsensitive) == 0)
            return item.second;
    }
    return QString();
}
