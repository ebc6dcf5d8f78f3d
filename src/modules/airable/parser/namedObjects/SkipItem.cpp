#include "SkipItem.h"

#include "SimpleValue.h"
#include "airablelog.h"

#include <log4cplus/loggingmacros.h>

namespace airable {

SkipItem::SkipItem()
    : ContainerWithName(QStringLiteral("skip"))
{
}

ContainerWithName::Ptr SkipItem::create(QString const&)
{
    return ContainerWithName::Ptr(new SkipItem);
}

int SkipItem::available() const
{
    auto value = childByNameAs<SimpleValue<int>>(QLatin1String("available"));
    if (!value) {
        LOG4CPLUS_ERROR(logger, "missing field 'available'!");
        return 0;
    }
    return value->value();
}

QString SkipItem::statusUrl() const
{
    auto value = childByNameAs<SimpleValue<QString>>(QLatin1String("status"));
    if (!value) {
        LOG4CPLUS_ERROR(logger, "missing field 'status'");
        return QString();
    }
    return value->value();
}

// A missing "url" is reported with the same text as a missing "status":
// log watchers match that one text for both.
QString SkipItem::skipUrl() const
{
    auto value = childByNameAs<SimpleValue<QString>>(QLatin1String("url"));
    if (!value) {
        LOG4CPLUS_ERROR(logger, "missing field 'status'");
        return QString();
    }
    return value->value();
}

} // namespace airable
