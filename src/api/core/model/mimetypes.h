#pragma once

#include <QString>

namespace MimeTypes {
namespace Audio {
QString const& mpeg();
QString const& unknown();
}
namespace Image {
QString const& unknown();
}
// The type of a file extension ("mp3", ".flac", "AAC"), or the default.
QString extensionToMimeType(QString const& extension, QString const& defaultType);
// The type of the file a URI names, by the extension of its path.
QString URIToMimeType(QString const& uri, QString const& defaultType);
}
