#include "cb_airable.h"

#include "ActionItem.h"
#include "AlbumItem.h"
#include "ButtonItem.h"
#include "DescriptionItem.h"
#include "FormItem.h"
#include "ImagesContainer.h"
#include "PlaylistItem.h"
#include "ProgramItem.h"
#include "RadioItem.h"
#include "tarnconstants.h"

#include <QDataStream>
#include <QStringBuilder>

QByteArray CMAirableWorker::writeContextActions(QList<ContextAction> const& actions)
{
    // Each text goes in as UTF-16 behind its length: room for the usual
    // action is made at once rather than as the stream grows.
    QByteArray blob;
    blob.reserve(256 * actions.size());
    QDataStream out(&blob, QIODevice::WriteOnly);
    for (auto const& a : actions)
        out << a.title << a.url << a.id << a.opensContext << a.active;
    return blob;
}

QList<CMAirableWorker::ContextAction> CMAirableWorker::readContextActions(QByteArray const& blob)
{
    QList<ContextAction> actions;
    QDataStream in(blob);
    while (in.status() == QDataStream::Ok && !in.atEnd()) {
        ContextAction a;
        in >> a.title >> a.url >> a.id >> a.opensContext >> a.active;
        actions << a;
    }
    return actions;
}

namespace {

QVariant typeOf(airable::ContentItem const& item, bool asContainer)
{
    if (asContainer)
        return TarnRolesType::Container();
    if (item.playable())
        return TarnRolesType::Audio();
    if (item.browsable())
        return item.hasName(QLatin1String("logout")) ? TarnRolesType::Action() : TarnRolesType::Container();
    if (dynamic_cast<airable::ButtonItem const*>(&item))
        return TarnRolesType::Action();
    if (dynamic_cast<airable::DescriptionItem const*>(&item))
        return TarnRolesType::Text();
    if (dynamic_cast<airable::FormItem const*>(&item))
        return TarnRolesType::Container();
    return QVariant();
}

QVariant containerTypeOf(airable::ContentItem const& item)
{
    if (dynamicContentListings.contains(item.name()))
        return TarnRolesContainerType::DynamicContent();
    if (dynamic_cast<airable::PlaylistItem const*>(&item))
        return TarnRolesContainerType::Playlist();
    if (dynamic_cast<airable::AlbumItem const*>(&item))
        return TarnRolesContainerType::Album();
    return TarnRolesContainerType::None();
}

} // namespace

QList<QVariant> CMAirableWorker::genRow(QStringList const& roles, portable::SmartPointer<airable::ContentItem> item,
                                        bool asContainer)
{
    CMPath contextPath;
    auto const actions = item->actions();
    if (!actions.isEmpty()) {
        QList<ContextAction> context;
        context.reserve(actions.size());
        for (auto const& action : actions)
            context << ContextAction{action->title(), action->url(), action->combinedId(),
                                     contextOpeningActions.contains(action->name()), action->active()};
        QByteArray const blob = writeContextActions(context).toBase64();
        // Put together in one allocation, without a text of the blob alone.
        contextPath = addPrefix(TarnAirablePrefixContext() % QLatin1Char(':') % QLatin1String(blob));
    }
    bool const isProgram = item.dynamicCast<airable::ProgramItem>() != nullptr;

    QList<QVariant> values;
    values.reserve(roles.size());
    for (auto const& role : roles) {
        if (role == TarnRoles::Title()) {
            values << item->title();
        } else if (role == TarnRoles::Type()) {
            values << typeOf(*item, asContainer);
        } else if (role == TarnRoles::ContainerType()) {
            values << containerTypeOf(*item);
        } else if (role == TarnRoles::AudioType()) {
            values << (isProgram || item.dynamicCast<airable::RadioItem>() ? QVariant(TarnRolesAudioType::AudioBroadcast())
                                                                           : QVariant());
        } else if (role == TarnRoles::Path()) {
            CMPath const path = item->hasName(QLatin1String("logout"))
                ? addPrefix(QStringLiteral("%1:%2:%3").arg(TarnAirablePrefixLogout(), item->stype(), item->url()))
                : addPrefix(item->url());
            values << path.toEncoded();
        } else if (role == TarnRoles::MediaData()) {
            TarnUrl const url = TarnUrl::fromEncoded(item->url().toLatin1());
            CMPath const playContext
                = addPrefix(TarnAirablePrefixPlayContext()) + (QStringLiteral(":") + QString::fromLatin1(url.toEncoded()));
            values << handleMediaData(item, playContext);
        } else if (role == TarnRoles::Context()) {
            values << (contextPath.isEmpty() ? QVariant() : TarnRoles().setPath(contextPath).__variant());
        } else if (role == TarnRoles::Icon()) {
            auto const images = item->firstChildOf<airable::ImagesContainer>();
            if (images) {
                bool found = false;
                QString const src = images->lastImageSrc(&found);
                values << (found ? QVariant(src) : QVariant());
            } else {
                QString const icon = extractServiceIcon(item->combinedId());
                values << (icon.isEmpty() ? QVariant() : QVariant(icon));
            }
        } else if (role == TarnRoles::ContainerPlayable()) {
            values << item->containerPlayable();
        } else if (role == TarnRoles::ReleaseDate()) {
            bool ok = false;
            long long const date = m_lastListing ? m_lastListing->release(&ok) : 0;
            values << (ok ? QVariant(date) : QVariant());
        } else if (role == TarnRoles::Disabled()) {
            values << item->url().isEmpty();
        } else if (role == TarnRoles::Id()) {
            values << item->combinedId();
        } else {
            values << QVariant();
        }
    }
    return values;
}
