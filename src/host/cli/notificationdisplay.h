#pragma once

#include "tarnvalue.h"

#include <QObject>

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

private:
    void show(TarnNotificationDisplayItem const& item);
};
