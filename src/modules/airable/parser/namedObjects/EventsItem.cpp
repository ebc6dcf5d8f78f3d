#include "EventsItem.h"

namespace airable {

QString const EventsItem::startEvent = QStringLiteral("start");
QString const EventsItem::pauseEvent = QStringLiteral("pause");
QString const EventsItem::stopEvent = QStringLiteral("stop");
QString const EventsItem::errorEvent = QStringLiteral("error");

EventsItem::EventsItem()
    : ContainerWithName(QStringLiteral("events"))
{
}

ContainerWithName::Ptr EventsItem::create(QString const&)
{
    return ContainerWithName::Ptr(new EventsItem);
}

QString EventsItem::start() const
{
    return stringValueOf(QLatin1String("start"));
}

QString EventsItem::pause() const
{
    return stringValueOf(QLatin1String("pause"));
}

QString EventsItem::stop() const
{
    return stringValueOf(QLatin1String("stop"));
}

QString EventsItem::error() const
{
    return stringValueOf(QLatin1String("error"));
}

QHash<QString, QString> EventsItem::events() const
{
    QHash<QString, QString> result;
    auto add = [&result](QString const& event, QString const& url) {
        if (!url.isEmpty())
            result.insert(event, url);
    };
    add(startEvent, start());
    add(pauseEvent, pause());
    add(stopEvent, stop());
    add(errorEvent, error());
    return result;
}

} // namespace airable
