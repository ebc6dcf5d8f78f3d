#pragma once

#include "ContainerWithName.h"
#include <QHash>

namespace airable {

// The URLs to call when the player reaches an event, keyed by the event word.
class EventsItem : public ContainerWithName
{
public:
    typedef portable::SmartPointer<EventsItem> Ptr;

    EventsItem();

    ContainerWithName::Ptr create(QString const& name) override;

    static QString const startEvent;
    static QString const pauseEvent;
    static QString const stopEvent;
    static QString const errorEvent;

    QString start() const;
    QString pause() const;
    QString stop() const;
    QString error() const;
    // Event word to URL, only for the events that have a URL.
    QHash<QString, QString> events() const;
};

} // namespace airable
