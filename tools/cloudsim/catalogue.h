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
    std::string type = "application/json";
    // Where a redirect (302) sends the browser.
    std::string location{};
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
//   "@type": "text/html"   the content type of a raw body
//   "@loginForm": {...}    on a service's home ("/deezer"): the service takes
//                          a password, and this form answers for all of its
//                          paths until the device has logged in
//   "@oauthLogin": {...}   on a service's home ("/tidal"): the user logs in
//                          on the service's own page, and this message, whose
//                          "oauth" button leads there, answers for all of its
//                          paths until the device has logged in
//   "@answer": "name"      the answer is made by the server's behaviour of
//                          that name (a search, a program) at each request
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

    // The object answered at a path of a file, an item's URL or an id, with
    // its directives; null when there is none.
    rapidjson::Value const* object(QString const& path) const;
    // The "@answer" of the path's object, or empty; and whether any path
    // has this one.
    QString behaviourOf(QString const& path) const;
    bool hasBehaviour(QString const& name) const;
    // Services whose home carries a login form, and that form.
    QStringList loginServices() const;
    rapidjson::Value const* loginForm(QString const& service) const;
    // Services whose home carries a message that offers a login on the
    // service's own page, and that message.
    QStringList oauthServices() const;
    rapidjson::Value const* oauthMessage(QString const& service) const;
    // Every item of a service and a type, one copy each, in the order of
    // their ids.
    QList<rapidjson::Value const*> items(QString const& stype, QString const& itype) const;

private:
    QStringList servicesWith(char const* directive) const;
    rapidjson::Value const* homeDirective(QString const& service, char const* directive) const;
    void index(rapidjson::Value const& value);
    void indexObject(rapidjson::Value const& value);
    void indexItemUrl(rapidjson::Value const& value, QString const& itype);

    std::vector<std::unique_ptr<rapidjson::Document>> mDocuments;
    QHash<QString, rapidjson::Value const*> mRoutes;
    QHash<QString, rapidjson::Value const*> mIds;
    QSet<QString> mTopLevelIds;
    QSet<QString> mBehaviours;
    QHash<QString, rapidjson::Value const*> mItemUrls;
};

} // namespace cloudsim
