#include "session.h"
#include "jsonvalue.h"
#include "sessionrows.h"

#include "cmglobal.h"
#include "tarnclient.h"

namespace {

CMPath contextOf(QJsonObject const& roles)
{
    return CMPath::fromEncoded(roles.value(TarnRoles::Context()).toObject().value(TarnRoles::Path()).toString());
}

} // namespace

int Session::menu(Command const& command)
{
    CMPath context;
    QString owner;
    if (command.args.isEmpty()) {
        if (mLast.read.path.isEmpty())
            return fail("noListing", QStringLiteral("Nothing listed yet"), ExitErrorReply);
        QJsonObject const own = jsonFromVariant(mLast.read.roles.__variant()).toObject();
        context = contextOf(own);
        owner = mPaths.shortText(mLast.read.path);
    } else if (isRowNumber(command.args[0])) {
        int index = 0;
        if (!lastRow(command.args[0], &index))
            return ExitErrorReply;
        QJsonObject const row = mLast.rows.at(index).toObject();
        context = contextOf(row);
        owner = QStringLiteral("Row %1").arg(command.args[0]);
    } else {
        CMPath const path = mPaths.parse(command.args[0]);
        auto reply = TarnClient::data(path, {TarnRoles::Context()});
        if (!await(reply))
            return ExitErrorReply;
        context = contextOf(presentRoles({TarnRoles::Context()}, reply.value()));
        owner = mPaths.shortText(path);
    }
    if (context.isEmpty())
        return fail("noMenu", QStringLiteral("%1 has no menu").arg(owner), ExitErrorReply);
    return openMenu(context);
}

int Session::openMenu(CMPath const& context)
{
    Listing listing;
    listing.menu = true;
    Failure failure;
    if (!open(context, 0, mPageSize - 1, CMAllRoles(), true, &listing, &failure))
        return fail(failure.name, failure.message, ExitErrorReply);
    return printListing(listing);
}
