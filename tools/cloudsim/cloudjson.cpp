#include "cloudjson.h"

#include <QUrl>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace cloudsim {

bool isDirective(rapidjson::Value const& name)
{
    return name.GetStringLength() > 0 && name.GetString()[0] == '@';
}

std::string serialize(rapidjson::Value const& answer)
{
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    if (!answer.IsObject()) {
        answer.Accept(writer);
        return std::string(buffer.GetString(), buffer.GetSize());
    }
    writer.StartObject();
    for (auto const& member : answer.GetObject()) {
        if (isDirective(member.name))
            continue;
        writer.Key(member.name.GetString(), member.name.GetStringLength());
        member.value.Accept(writer);
    }
    writer.EndObject();
    return std::string(buffer.GetString(), buffer.GetSize());
}

rapidjson::Value text(QString const& s, rapidjson::Document::AllocatorType& alloc)
{
    QByteArray const utf8 = s.toUtf8();
    return rapidjson::Value(utf8.constData(), static_cast<rapidjson::SizeType>(utf8.size()), alloc);
}

rapidjson::Value idArray(QString const& service, QString const& itype, QString const& itemId,
                         rapidjson::Document::AllocatorType& alloc)
{
    rapidjson::Value id(rapidjson::kArrayType);
    id.PushBack(text(service, alloc), alloc).PushBack(text(itype, alloc), alloc).PushBack(text(itemId, alloc), alloc);
    return id;
}

rapidjson::Value entryOf(rapidjson::Value const& item, rapidjson::Document::AllocatorType& alloc)
{
    rapidjson::Value entry(rapidjson::kObjectType);
    for (auto const& m : item.GetObject()) {
        if (!isDirective(m.name) && m.name != "content")
            entry.AddMember(rapidjson::Value(m.name, alloc), rapidjson::Value(m.value, alloc), alloc);
    }
    return entry;
}

std::string messageObject(QString const& service, QString const& itemId, QString const& title,
                          QString const& description, QList<Button> const& buttons)
{
    rapidjson::Document message(rapidjson::kObjectType);
    auto& alloc = message.GetAllocator();
    message.AddMember("id", idArray(service, "message", itemId, alloc), alloc);
    message.AddMember("title", text(title, alloc), alloc);
    message.AddMember("description", text(description, alloc), alloc);
    rapidjson::Value list(rapidjson::kArrayType);
    for (Button const& b : buttons) {
        rapidjson::Value button(rapidjson::kObjectType);
        button.AddMember("id", idArray(service, "button", b.id, alloc), alloc);
        button.AddMember("title", text(b.title, alloc), alloc);
        button.AddMember("url", text(b.url, alloc), alloc);
        list.PushBack(button, alloc);
    }
    message.AddMember("buttons", list, alloc);
    return serialize(message);
}

void replaceAll(std::string& text, std::string const& from, std::string const& to)
{
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

std::string percentEncoded(QString const& value)
{
    return QUrl::toPercentEncoding(value).toStdString();
}

} // namespace cloudsim
