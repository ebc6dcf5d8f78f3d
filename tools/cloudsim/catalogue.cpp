#include "catalogue.h"

#include <QDir>
#include <QFile>

#include <rapidjson/error/en.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace cloudsim {

namespace {

constexpr unsigned ParseFlags = rapidjson::kParseCommentsFlag | rapidjson::kParseTrailingCommasFlag;

bool isDirective(rapidjson::Value const& name)
{
    return name.GetStringLength() > 0 && name.GetString()[0] == '@';
}

// Writes an answer without its directives.
std::string serialize(rapidjson::Value const& answer)
{
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
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

// Of several copies of one item, the one with the most members stands for
// it, so that the choice doesn't hang on hash order.
void keepFullest(QHash<QString, rapidjson::Value const*>* index, QString const& key, rapidjson::Value const& value)
{
    auto const known = index->constFind(key);
    if (known == index->constEnd() || (*known)->MemberCount() < value.MemberCount())
        index->insert(key, &value);
}

// Their URL answers with something other than the item itself.
bool answersElsewhere(QString const& itype)
{
    static QSet<QString> const types{"radio.stream", "feed.stream", "stream", "action", "button", "service", "redirect"};
    return types.contains(itype);
}

QString idText(rapidjson::Value const& id)
{
    if (id.IsString())
        return QString::fromUtf8(id.GetString(), id.GetStringLength());
    if (id.IsInt64())
        return QString::number(id.GetInt64());
    if (id.IsBool())
        return id.GetBool() ? "true" : "false";
    return QString();
}

} // namespace

bool Catalogue::load(QString const& directory, QString* error)
{
    QDir const dir(directory);
    QStringList const files = dir.entryList({"*.json"}, QDir::Files, QDir::Name);
    if (files.isEmpty()) {
        *error = QString("no *.json files in %1").arg(directory);
        return false;
    }
    for (QString const& name : files) {
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            *error = QString("%1: %2").arg(file.fileName(), file.errorString());
            return false;
        }
        QByteArray const text = file.readAll();
        auto document = std::make_unique<rapidjson::Document>();
        document->Parse<ParseFlags>(text.constData(), text.size());
        if (document->HasParseError()) {
            *error = QString("%1: offset %2: %3")
                         .arg(file.fileName())
                         .arg(document->GetErrorOffset())
                         .arg(rapidjson::GetParseError_En(document->GetParseError()));
            return false;
        }
        if (!document->IsObject()) {
            *error = QString("%1: not an object of paths").arg(file.fileName());
            return false;
        }
        for (auto const& member : document->GetObject()) {
            QString const path = QString::fromUtf8(member.name.GetString(), member.name.GetStringLength());
            if (!member.value.IsObject() && !member.value.IsString()) {
                *error = QString("%1: %2: an answer is an object or an alias").arg(file.fileName(), path);
                return false;
            }
            if (mRoutes.contains(path)) {
                *error = QString("%1: %2 is answered twice").arg(file.fileName(), path);
                return false;
            }
            mRoutes.insert(path, &member.value);
        }
        mDocuments.push_back(std::move(document));
    }
    for (auto const* answer : qAsConst(mRoutes)) {
        if (answer->IsObject())
            indexObject(*answer);
    }
    for (auto it = mIds.cbegin(); it != mIds.cend(); ++it)
        mTopLevelIds.insert(it.key());
    for (auto const* answer : qAsConst(mRoutes))
        index(*answer);
    return true;
}

void Catalogue::indexObject(rapidjson::Value const& value)
{
    auto const id = value.FindMember("id");
    if (id == value.MemberEnd() || !id->value.IsArray() || id->value.Size() < 3)
        return;
    auto const& parts = id->value;
    if (!parts[0].IsString() || !parts[1].IsString())
        return;
    QString const itype = QString::fromUtf8(parts[1].GetString());
    QString const key = QString("/id/%1/%2/%3").arg(QString::fromUtf8(parts[0].GetString()), itype, idText(parts[2]));
    // An answer of its own stands for its id, else the fullest copy.
    if (!mTopLevelIds.contains(key))
        keepFullest(&mIds, key, value);
    indexItemUrl(value, itype);
}

void Catalogue::indexItemUrl(rapidjson::Value const& value, QString const& itype)
{
    auto const url = value.FindMember("url");
    if (url == value.MemberEnd() || !url->value.IsString() || answersElsewhere(itype))
        return;
    QString const text = QString::fromUtf8(url->value.GetString(), url->value.GetStringLength());
    QString const base = QStringLiteral("{base}");
    if (!text.startsWith(base + '/') || text.contains('?'))
        return;
    QString const path = text.mid(base.size());
    if (!mRoutes.contains(path))
        keepFullest(&mItemUrls, path, value);
}

void Catalogue::index(rapidjson::Value const& value)
{
    if (value.IsObject()) {
        indexObject(value);
        for (auto const& member : value.GetObject())
            index(member.value);
    } else if (value.IsArray()) {
        for (auto const& element : value.GetArray())
            index(element);
    }
}

rapidjson::Value const* Catalogue::find(QString const& path) const
{
    rapidjson::Value const* answer = mRoutes.value(path, mIds.value(path, mItemUrls.value(path)));
    if (answer && answer->IsString())
        answer = mRoutes.value(QString::fromUtf8(answer->GetString()));
    return answer && answer->IsObject() ? answer : nullptr;
}

bool Catalogue::answer(QString const& path, int page, Answer* out) const
{
    rapidjson::Value const* answer = find(path);
    if (!answer)
        return false;
    auto const status = answer->FindMember("@status");
    out->status = status != answer->MemberEnd() && status->value.IsInt() ? status->value.GetInt() : 200;
    auto const body = answer->FindMember("@body");
    auto const pageSize = answer->FindMember("@pageSize");
    if (body != answer->MemberEnd() && body->value.IsString())
        out->body.assign(body->value.GetString(), body->value.GetStringLength());
    else if (pageSize != answer->MemberEnd() && pageSize->value.IsInt() && pageSize->value.GetInt() > 0)
        out->body = pageOf(path, *answer, page);
    else
        out->body = serialize(*answer);
    return true;
}

// Cuts one page out of a listing and describes the others the way the cloud
// does: "collection" says where the page lies, "pagination" how to ask for
// the neighbours and for any page by number.
std::string Catalogue::pageOf(QString const& path, rapidjson::Value const& listing, int page) const
{
    int const limit = listing["@pageSize"].GetInt();
    rapidjson::Document result;
    result.SetObject();
    auto& alloc = result.GetAllocator();
    for (auto const& member : listing.GetObject()) {
        if (!isDirective(member.name))
            result.AddMember(rapidjson::Value(member.name, alloc), rapidjson::Value(member.value, alloc), alloc);
    }
    auto content = result.FindMember("content");
    if (content == result.MemberEnd() || !content->value.IsObject())
        return serialize(result);
    auto entries = content->value.FindMember("entries");
    if (entries == content->value.MemberEnd() || !entries->value.IsArray())
        return serialize(result);

    rapidjson::Value all(std::move(entries->value));
    int const total = static_cast<int>(all.Size());
    int const pages = std::max(1, (total + limit - 1) / limit);
    int const offset = (page - 1) * limit;
    rapidjson::Value slice(rapidjson::kArrayType);
    for (int i = offset; i < std::min(total, offset + limit); ++i)
        slice.PushBack(rapidjson::Value(all[i], alloc), alloc);
    entries->value = std::move(slice);

    std::string const base = "{base}" + path.toStdString() + "?p=";
    auto const text = [&alloc](std::string const& s) { return rapidjson::Value(s.c_str(), alloc); };
    rapidjson::Value collection(rapidjson::kObjectType);
    collection.AddMember("size", total, alloc).AddMember("limit", limit, alloc).AddMember("offset", offset, alloc);
    rapidjson::Value values(rapidjson::kArrayType);
    for (int p = 1; p <= pages; ++p)
        values.PushBack(p, alloc);
    rapidjson::Value pagesObject(rapidjson::kObjectType);
    pagesObject.AddMember("url", text(base + ":value:"), alloc)
        .AddMember("current", page, alloc)
        .AddMember("values", values, alloc)
        .AddMember("replace", ":value:", alloc);
    rapidjson::Value pagination(rapidjson::kObjectType);
    if (page < pages)
        pagination.AddMember("next", text(base + std::to_string(page + 1)), alloc);
    if (page > 1)
        pagination.AddMember("prev", text(base + std::to_string(page - 1)), alloc);
    pagination.AddMember("pages", pagesObject, alloc);
    content->value.AddMember("collection", collection, alloc).AddMember("pagination", pagination, alloc);
    return serialize(result);
}

QStringList Catalogue::routes() const
{
    QStringList paths = mRoutes.keys() + mItemUrls.keys();
    paths.sort();
    return paths;
}

} // namespace cloudsim
