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
#include <QtEndian>

namespace {

// The context blob of a row, as a QDataStream writes the actions: per
// action its title, URL and id as strings (the byte length, or all ones for
// a null string, then UTF-16 big-endian), then two bools of a byte each.
// Every row with actions carries one, so it is written straight into one
// buffer; readContextActions reads it back with a QDataStream.
class ContextBlob
{
public:
    void add(QString const& title, QString const& url, QString const& id, bool opensContext, bool active)
    {
        int const start = mBytes.size();
        mBytes.resize(start + 3 * 4 + 2 * (title.size() + url.size() + id.size()) + 2);
        char* out = mBytes.data() + start;
        appendString(out, title);
        appendString(out, url);
        appendString(out, id);
        *out++ = char(opensContext ? 1 : 0);
        *out++ = char(active ? 1 : 0);
    }

    QByteArray const& bytes() const { return mBytes; }

private:
    static void appendString(char*& out, QString const& text)
    {
        quint32 const length = text.isNull() ? 0xffffffffu : quint32(text.size()) * 2;
        qToBigEndian<quint32>(length, out);
        out += 4;
        if (text.isNull())
            return;
        qToBigEndian<quint16>(text.utf16(), text.size(), out);
        out += 2 * text.size();
    }

    QByteArray mBytes;
};

// Base64 with padding, as QByteArray::toBase64 writes it, straight into the
// text of a path.
QString base64Text(QByteArray const& bytes)
{
    static char const alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    auto const* in = reinterpret_cast<unsigned char const*>(bytes.constData());
    int const size = bytes.size();
    QString text((size + 2) / 3 * 4, Qt::Uninitialized);
    QChar* out = text.data();
    int i = 0;
    for (; i + 2 < size; i += 3) {
        unsigned const chunk = unsigned(in[i]) << 16 | unsigned(in[i + 1]) << 8 | in[i + 2];
        *out++ = QLatin1Char(alphabet[chunk >> 18]);
        *out++ = QLatin1Char(alphabet[(chunk >> 12) & 63]);
        *out++ = QLatin1Char(alphabet[(chunk >> 6) & 63]);
        *out++ = QLatin1Char(alphabet[chunk & 63]);
    }
    if (i < size) {
        unsigned const chunk = unsigned(in[i]) << 16 | (i + 1 < size ? unsigned(in[i + 1]) << 8 : 0u);
        *out++ = QLatin1Char(alphabet[chunk >> 18]);
        *out++ = QLatin1Char(alphabet[(chunk >> 12) & 63]);
        *out++ = i + 1 < size ? QLatin1Char(alphabet[(chunk >> 6) & 63]) : QLatin1Char('=');
        *out++ = QLatin1Char('=');
    }
    return text;
}

} // namespace

QByteArray CMAirableWorker::writeContextActions(QList<ContextAction> const& actions)
{
    ContextBlob blob;
    for (auto const& a : actions)
        blob.add(a.title, a.url, a.id, a.opensContext, a.active);
    return blob.bytes();
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
        return item.name() == QLatin1String("logout") ? TarnRolesType::Action() : TarnRolesType::Container();
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
        ContextBlob context;
        for (auto const& action : actions)
            context.add(action->title(), action->url(), action->combinedId(),
                        contextOpeningActions.contains(action->name()), action->active());
        contextPath = addPrefix(TarnAirablePrefixContext() + QLatin1Char(':') + base64Text(context.bytes()));
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
            CMPath const path = item->name() == QLatin1String("logout")
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
                auto const last = images->lastImage();
                values << (last ? QVariant(last->src()) : QVariant());
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
