#include "mimetypes.h"

#include <QHash>
#include <QUrl>

QString const& MimeTypes::Audio::mpeg()
{
    static QString const s(QStringLiteral("audio/mpeg"));
    return s;
}

QString const& MimeTypes::Audio::unknown()
{
    static QString const s(QStringLiteral("audio/unknown"));
    return s;
}

QString const& MimeTypes::Image::unknown()
{
    static QString const s(QStringLiteral("image/unknown"));
    return s;
}

QString MimeTypes::extensionToMimeType(QString const& extension, QString const& defaultType)
{
    static QHash<QString, QString> const table{
        {QStringLiteral("mp3"), QStringLiteral("audio/mpeg")},
        {QStringLiteral("mpeg"), QStringLiteral("audio/mpeg")},
        {QStringLiteral("aac"), QStringLiteral("audio/aac")},
        {QStringLiteral("aacp"), QStringLiteral("audio/aacp")},
        {QStringLiteral("m4a"), QStringLiteral("audio/mp4")},
        {QStringLiteral("mp4"), QStringLiteral("audio/mp4")},
        {QStringLiteral("flac"), QStringLiteral("audio/flac")},
        {QStringLiteral("ogg"), QStringLiteral("audio/ogg")},
        {QStringLiteral("vorbis"), QStringLiteral("audio/ogg")},
        {QStringLiteral("opus"), QStringLiteral("audio/opus")},
        {QStringLiteral("wav"), QStringLiteral("audio/wav")},
        {QStringLiteral("wma"), QStringLiteral("audio/x-ms-wma")},
        {QStringLiteral("m3u"), QStringLiteral("audio/x-mpegurl")},
        {QStringLiteral("m3u8"), QStringLiteral("application/vnd.apple.mpegurl")},
        {QStringLiteral("pls"), QStringLiteral("audio/x-scpls")},
        {QStringLiteral("jpg"), QStringLiteral("image/jpeg")},
        {QStringLiteral("jpeg"), QStringLiteral("image/jpeg")},
        {QStringLiteral("png"), QStringLiteral("image/png")},
        {QStringLiteral("gif"), QStringLiteral("image/gif")},
        {QStringLiteral("webp"), QStringLiteral("image/webp")},
        {QStringLiteral("svg"), QStringLiteral("image/svg+xml")},
    };
    QString ext = extension.toLower();
    if (ext.startsWith(QLatin1Char('.')))
        ext.remove(0, 1);
    return table.value(ext, defaultType);
}

QString MimeTypes::URIToMimeType(QString const& uri, QString const& defaultType)
{
    QString const path = QUrl(uri).path();
    int const slash = path.lastIndexOf(QLatin1Char('/'));
    int const dot = path.lastIndexOf(QLatin1Char('.'));
    if (dot < 0 || dot < slash)
        return defaultType;
    return extensionToMimeType(path.mid(dot + 1), defaultType);
}
