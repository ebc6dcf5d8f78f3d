#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <rapidjson/document.h>

#include <memory>
#include <string>
#include <vector>

namespace cloudsim {

struct Answer
{
    int status = 200;
    std::string body;
};

// The cloud's content: every *.json file of a directory is an object that
// maps request paths to answers. An answer is served as written, members in
// their order, except for these directives at its top level:
//   "@status": 204         the HTTP status (200 without it)
//   "@body": ""            a raw body instead of the JSON object
//   "@alias": "/path"      the answer of another path (the whole answer is then
//                          the string "/path"), e.g. "/listing/index": "/"
//   "@pageSize": 25        "content.entries" is served in pages of this size,
//                          with "collection" and "pagination" added
// Every identified object, at the top or nested, can also be asked for as
// "/id/<stype>/<itype>/<id>"; a top-level answer wins over a nested copy.
// An item is also answered at its own "url" when no path of a file is: a
// track of an album needs no answer of its own. Streams, actions, buttons
// and services are not, since their URL answers with something else (a
// redirect, the action's result, the service's home).
// URLs in answers begin with "{base}", which the server replaces.
class Catalogue
{
public:
    // Reads the directory, which may be a Qt resource path.
    bool load(QString const& directory, QString* error);

    // page counts from 1; it only matters for paged answers.
    bool answer(QString const& path, int page, Answer* out) const;

    QStringList routes() const;

private:
    rapidjson::Value const* find(QString const& path) const;
    void index(rapidjson::Value const& value);
    void indexObject(rapidjson::Value const& value);
    void indexItemUrl(rapidjson::Value const& value, QString const& itype);
    std::string pageOf(QString const& path, rapidjson::Value const& listing, int page) const;

    std::vector<std::unique_ptr<rapidjson::Document>> mDocuments;
    QHash<QString, rapidjson::Value const*> mRoutes;
    QHash<QString, rapidjson::Value const*> mIds;
    QSet<QString> mTopLevelIds;
    QHash<QString, rapidjson::Value const*> mItemUrls;
};

} // namespace cloudsim
