#pragma once

#include "cmpath.h"
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

    // Also hears each notification, on this object's thread: its text, and
    // the dialog whose buttons it offers (empty when it offers none).
    using Listener = std::function<void(QString const& text, CMPath const& buttonsAt)>;
    void setListener(Listener listener) { mListener = std::move(listener); }

private:
    void show(TarnNotificationDisplayItem const& item);
    void tell(QString const& text, QStringList const& buttons = {}, CMPath const& dialog = CMPath());

    Listener mListener;
};
