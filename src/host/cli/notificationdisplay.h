#pragma once

#include "tarnvalue.h"

#include <QObject>
#include <functional>

// The device's notification display, as lines on standard error: the
// platform's action that modules invoke to show a notification. A module
// names the dialog to show by its path; its title, text and buttons are
// read from there.
class NotificationDisplay : public QObject
{
    Q_OBJECT
public:
    // Takes the platform's action; it must outlive the modules that may
    // invoke it.
    NotificationDisplay();
    ~NotificationDisplay() override;

    // Also hears each notification's line, on this object's thread.
    void setListener(std::function<void(QString const&)> listener) { mListener = std::move(listener); }

private:
    void show(TarnNotificationDisplayItem const& item);
    void tell(QString const& line);

    std::function<void(QString const&)> mListener;
};
