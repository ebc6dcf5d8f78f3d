#include "notificationdisplay.h"
#include "printer.h"

#include "cmglobal.h"
#include "cmroot.h"
#include "tarnclient.h"
#include "tarnconstants.h"

namespace {

QStringList const kRoles{TarnRoles::Title(), TarnRoles::Type()};

// What a dialog shows: its title and texts on one line, and its buttons.
struct Shown
{
    QString text;
    QStringList buttons;
};

Shown describe(TarnRowsRoles const& answer)
{
    Shown shown{answer.roles().title().toString(), {}};
    for (QVariant const& r : answer.rows()) {
        TarnRoles const row(CMGlobal::rolesValuesToHash(kRoles, r.toList()));
        QString const type = row.value(TarnRoles::Type()).toString();
        QString const title = row.title().toString();
        if (type == TarnRolesType::Text() && !title.isEmpty() && title != shown.text)
            shown.text += (shown.text.isEmpty() ? QString() : QStringLiteral(": ")) + title;
        else if (type == TarnRolesType::Action())
            shown.buttons << title;
    }
    return shown;
}

} // namespace

NotificationDisplay::NotificationDisplay()
{
    CMRootWorker::instance()->setAction(TarnNotificationDisplayOpenPath(),
                                        [this](TarnHash const& arguments, CMReply<QVariant> const& reply) {
                                            // Either a value record holding the item, or the item itself.
                                            TarnNotificationDisplayItem item(TarnHash::toHash(
                                                arguments.value(TarnValue::NotificationDisplayItemKey())));
                                            if (item.isEmpty())
                                                item = TarnNotificationDisplayItem(arguments);
                                            // Modules show notifications from their own thread.
                                            QMetaObject::invokeMethod(this, [this, item] { show(item); },
                                                                      Qt::QueuedConnection);
                                            reply.setValue(QVariant());
                                        });
}

NotificationDisplay::~NotificationDisplay()
{
    CMRootWorker::instance()->setAction(TarnNotificationDisplayOpenPath(), nullptr);
}

void NotificationDisplay::show(TarnNotificationDisplayItem const& item)
{
    if (!item.text().isEmpty() || item.path().isEmpty()) {
        tell(item.text().isEmpty() ? item.toJsonString() : item.text());
        return;
    }
    CMPath const path = item.path();
    TarnClient::rows(path, 0, 49, kRoles).onFinished(this, [this, path](CMReply<TarnRowsRoles> const& reply) {
        if (reply.hasError()) {
            tell(path.toEncoded());
            return;
        }
        Shown const shown = describe(reply.value());
        tell(shown.text.isEmpty() ? path.toEncoded() : shown.text, shown.buttons, path);
    });
}

// The line names the buttons and the dialog's path, which lets the user open
// it to press one.
void NotificationDisplay::tell(QString const& text, QStringList const& buttons, CMPath const& dialog)
{
    Printer::notification(buttons.isEmpty() ? text
                                            : QStringLiteral("%1 (%2 at %3)")
                                                  .arg(text, buttons.join(QStringLiteral(", ")), dialog.toEncoded()));
    if (mListener)
        mListener(text, buttons.isEmpty() ? CMPath() : dialog);
}
