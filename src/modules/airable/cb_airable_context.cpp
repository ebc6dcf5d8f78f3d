#include "cb_airable.h"

#include "airableerrors.h"
#include "ActionItem.h"
#include "ImagesContainer.h"
#include "TrackItem.h"
#include "airabletrace.h"
#include "cmnode.h"
#include "mimetypes.h"
#include "tarnconstants.h"
#include "tarndialogtypes.h"
#include "tarnmediadata.h"
#include "airablelog.h"

#include <QElapsedTimer>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace {

// How long an action's message stays when nobody looks at it.
constexpr int kActionDialogUnusedMs = 10000;

// The monotonic clock's milliseconds, which make every action dialog's
// path a new one; two dialogs within a millisecond take the next free one.
qint64 dialogStamp()
{
    static qint64 last = -1;
    QElapsedTimer clock;
    clock.start();
    last = qMax(last + 1, clock.msecsSinceReference());
    return last;
}

} // namespace

void CMAirableWorker::handleContextMenu(CMGetRowsRequest const& request, QList<ContextAction> const& actions,
                                        QList<TarnRoles> const& extraRows)
{
    AIRABLE_TRACE(logger, request.path().toEncoded().toStdString());
    QVariantList all;
    for (TarnRoles const& extra : extraRows) {
        QVariantList row;
        for (auto const& role : request.roles())
            row << extra.value(role);
        all << QVariant(row);
    }
    for (ContextAction const& action : actions) {
        QVariantList row;
        for (auto const& role : request.roles()) {
            if (role == TarnRoles::Title())
                row << action.title;
            else if (role == TarnRoles::Path())
                // An action that opens a list is browsed; any other is carried out.
                row << (action.opensContext
                            ? addPrefix(action.url).toEncoded()
                            : addPrefix(QStringLiteral("%1:%2").arg(TarnAirablePrefixAction(), action.url)).toEncoded());
            else if (role == TarnRoles::Type())
                row << QVariant(action.opensContext ? TarnRolesType::Container() : TarnRolesType::Action());
            else if (role == TarnRoles::ContainerType())
                row << (action.opensContext ? QVariant(TarnRolesContainerType::Context()) : QVariant());
            else if (role == TarnRoles::Id())
                row << action.id;
            else if (role == TarnRoles::Preferred())
                row << action.active;
            else
                row << QVariant();
        }
        all << QVariant(row);
    }

    int const total = all.size();
    QVariantList rows;
    for (int i = qMax(0, request.fromRow()); i < total && i <= request.toRow(); ++i)
        rows << all.at(i);
    TarnRowsRoles answer;
    answer.setRowsCount(total);
    answer.setRows(rows);
    TarnRoles roles;
    roles.setContainerType(int(TarnDialogContainerType::Dialog));
    roles.setPath(request.path());
    if (extraRows.isEmpty())
        roles.setTitle(TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QStringLiteral("Actions"))));
    answer.setRoles(roles);
    request.reply().setValue(answer);
}

void CMAirableWorker::on_getContentContextDone(AirableConnect::Reply const& reply, CMRequest const& request,
                                               QVariant const&)
{
    AIRABLE_TRACE(logger, reply.url.toString().toStdString());
    CMGetRowsRequest const rows(request);
    if (rows.isNull()) {
        LOG4CPLUS_ERROR(logger, "on_getContentContextDone: received empty CMGetRowsRequest");
        return;
    }
    if (!reply.object) {
        rows.reply().setError(translatedError(Q_FUNC_INFO, QStringLiteral("Couldn't parse data from request")));
        return;
    }
    auto const item = reply.object.dynamicCast<airable::ContentItem>();
    if (!item) {
        rows.reply().setError(translatedError(Q_FUNC_INFO, QStringLiteral("Couldn't cast object to item")));
        return;
    }

    QList<TarnRoles> extraRows;
    static QHash<QString, char const*> const headings{
        {QStringLiteral("artist"), "ARTIST INFO"}, {QStringLiteral("album"), "ALBUM INFO"}, {QStringLiteral("track"), "TRACK INFO"}};
    bool const infoBlock = extractServiceId(item->stype(), QString()) == TarnService_Qobuz_Id()
        && headings.contains(item->itype());
    if (infoBlock) {
        // Qobuz offers a picture and a heading over its texts.
        if (!item->description().isEmpty()) {
            QString const heading =
                TrString(TrCharData(trExtractContext(Q_FUNC_INFO), QString::fromLatin1(headings.value(item->itype()))))
                    .toString();
            QString src;
            if (auto const images = item->firstChildOf<airable::ImagesContainer>())
                if (!images->images().isEmpty())
                    src = images->images().last()->src();
            QString subtitle;
            if (auto const track = item.dynamicCast<airable::TrackItem>())
                subtitle = track->artistTitle() + QStringLiteral(" - ") + track->albumTitle();
            TarnResource const image = TarnResource()
                                           .setMimeType(MimeTypes::URIToMimeType(src, MimeTypes::Image::unknown()))
                                           .setUri(src)
                                           .setUid(QStringLiteral("0"));
            extraRows << TarnRoles()
                             .setType(TarnRolesType::Text())
                             .setImageType(TarnRolesImageType::Cover())
                             .setTitle(TrString(item->title()))
                             .setDescription(TrString(subtitle))
                             .setMediaData(TarnMediaData().setResources({image.__variant()}));
            extraRows << TarnRoles().setTitle(TrString(heading)).setDescription(TrString(processDescription(item->description())));
        }
    } else if (!item->description().isEmpty()) {
        extraRows << TarnRoles().setDescription(TrString(processDescription(item->description())));
    }

    QList<ContextAction> actions;
    for (auto const& action : item->actions()) {
        // The cloud's own return marker has no place in a menu's link.
        TarnUrl url = TarnUrl::fromEncoded(action->url().toUtf8());
        url.removeQueryItem(QStringLiteral("r"));
        actions << ContextAction{action->title(), url.toString(), action->combinedId(),
                                 contextOpeningActions.contains(action->name()), action->active()};
    }
    handleContextMenu(rows, actions, extraRows);
}

bool CMAirableWorker::handleActionDialog(CMGetRowsRequest const& request, airable::AirableObject::Ptr object)
{
    AIRABLE_TRACE(logger, request.path().toEncoded().toStdString());
    auto const action = object.dynamicCast<airable::ActionItem>();
    if (!action->reaction().isEmpty())
        performReaction(action->reaction());
    else if (!action->perform().isEmpty())
        performReaction(action->perform());

    if (action->message().isEmpty()) {
        request.reply().setValue(TarnRowsRoles());
        return true;
    }
    CMPath path = addPrefix(TarnAirablePrefixActionDialog());
    path.appendSubpath(QString::number(dialogStamp()));
    CMListRowsNode* const node = CMListRowsNode::create(nodes(), path);
    node->setContainerType(int(TarnDialogContainerType::Dialog));
    node->rowsAppend(TarnRoles().setId(action->combinedId()).setTitle(TrString(action->message())));
    // The node goes by itself once nobody uses it.
    new CMUnusedNodeTimer(node, kActionDialogUnusedMs);
    TarnRowsRoles answer;
    answer.setRowsRedirect(path);
    request.reply().setValue(answer);
    return true;
}
