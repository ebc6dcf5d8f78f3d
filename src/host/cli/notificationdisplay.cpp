#include "notificationdisplay.h"
#include "printer.h"

#include "cmglobal.h"
#include "cmroot.h"
#include "tarnclient.h"
#include "tarnconstants.h"

namespace {

QStringList const kRoles{TarnRoles::Title(), TarnRoles::Type()};

// Title, text and buttons of a dialog on one line; the path lets the user
// open it to press one.
QString describe(CMPath const& path, TarnRowsRoles const& answer)
{
    QStringList texts;
    QStringList buttons;
    for (QVariant const& r : answer.rows()) {
        TarnRoles const row(CMGlobal::rolesValuesToHash(kRoles, r.toList()));
        QString const type = row.value(TarnRoles::Type()).toString();
        if (type == TarnRolesType::Text() && !row.title().toString().isEmpty())
            texts << row.title().toString();
        else if (type == TarnRolesType::Action())
            buttons << row.title().toString();
    }
    QString line = answer.roles().title().toString();
    for (QString const& t : texts) {
        if (t != line)
            line += (line.isEmpty() ? QString() : QStringLiteral(": ")) + t;
    }
    if (!buttons.isEmpty())
        line += QStringLiteral(" (%1 at %2)").arg(buttons.join(QStringLiteral(", ")), path.toEncoded());
    return line.isEmpty() ? path.toEncoded() : line;
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
        tell(reply.hasError() ? path.toEncoded() : describe(path, reply.value()));
    });
}

void NotificationDisplay::tell(QString const& line)
{
    Printer::notification(line);
    if (mListener)
        mListener(line);
}
