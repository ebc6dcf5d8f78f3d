#pragma once

#include "cmpath.h"

// Tree paths as a person types and reads them. A path below the worker's
// prefix may leave the prefix out, a path starting with "/" is taken below
// the cloud's base URL, and "/" alone is the worker's root. The unit
// separator before a path's parameters shows as U+241F, and is read back.
class PathText
{
public:
    PathText(QString workerPrefix, QString baseUrl);

    CMPath parse(QString const& text) const;
    // A text that parse() turns back into the same path: "/" for the
    // worker's root, the part below the base URL for cloud URLs under it,
    // and the whole encoded path for everything else.
    QString shortText(CMPath const& path) const;
    QString const& workerPrefix() const { return mPrefix; }

private:
    QString mPrefix;
    QString mBaseUrl;
};
