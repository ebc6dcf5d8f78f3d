#pragma once

#include "../play/play_fixture.h"
#include "tarnactionreply.h"
#include "tarndialogtypes.h"
#include "tarnoauth2.h"

// The worker with dialogs of the test's documents: clients browse a dialog
// after the redirect to its nodes, set its fields and press its buttons.
class Dialogs : public Play
{
protected:
    // Rows of a path with the roles a dialog shows.
    TarnRowsRoles listing(CMPath const& path, int from = 0, int to = 49)
    {
        auto reply = TarnClient::rows(path, from, to, roles());
        EXPECT_TRUE(TarnClient::wait(reply, kPatienceMs)) << path.toEncoded().toStdString();
        lastError = reply.error();
        return reply.value();
    }

    // The dialog a cloud path leads to.
    CMPath open(QString const& cloudPath)
    {
        TarnRowsRoles const answer = listing(at(cloudPath));
        EXPECT_TRUE(answer.hasRowsRedirect()) << cloudPath.toStdString() << lastError.messageText().toStdString();
        return answer.rowsRedirect();
    }

    TarnRoles row(TarnRowsRoles const& rows, int i) const
    {
        return TarnRoles(CMGlobal::rolesValuesToHash(roles(), rows.rows().value(i).toList()));
    }

    CMReply<QVariant> press(CMPath const& button) { return set(button, true, TarnRoles::Activate()); }
    CMReply<QVariant> type(CMPath const& field, QString const& text)
    {
        return set(field, TarnValue().setString_(text).__variant());
    }

    static QStringList roles()
    {
        return {TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Path(), TarnRoles::Id(),
                TarnRoles::Value(),  TarnRoles::Edit(), TarnRoles::MediaData()};
    }

    static std::string text(QVariant const& v)
    {
        return (v.userType() == qMetaTypeId<TrString>() ? v.value<TrString>().toString() : v.toString()).toStdString();
    }

    CMError lastError;
};
