#pragma once

#include <QList>
#include <QString>

#include <rapidjson/document.h>

#include <string>

namespace cloudsim {

// Members of an answer in the catalogue that steer the server, such as
// "@status"; they are never served.
bool isDirective(rapidjson::Value const& name);

// The answer as JSON text, without its directives at the top level.
std::string serialize(rapidjson::Value const& answer);

rapidjson::Value text(QString const& s, rapidjson::Document::AllocatorType& alloc);
// The "id" member of the cloud's objects: [service, type word, item id].
rapidjson::Value idArray(QString const& service, QString const& itype, QString const& itemId,
                         rapidjson::Document::AllocatorType& alloc);

// An item as a listing shows it: everything but its own listing.
rapidjson::Value entryOf(rapidjson::Value const& item, rapidjson::Document::AllocatorType& alloc);

struct Button
{
    QString id;
    QString title;
    QString url;
};

// A message of a service: a title, a text and its buttons.
std::string messageObject(QString const& service, QString const& itemId, QString const& title,
                          QString const& description, QList<Button> const& buttons);

// Replaces every placeholder of an answer's text, such as "{base}".
void replaceAll(std::string& text, std::string const& from, std::string const& to);

// A query value as it goes into a URL that the cloud hands out.
std::string percentEncoded(QString const& value);

} // namespace cloudsim
