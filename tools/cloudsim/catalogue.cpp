#include "catalogue.h"

#include "cloudjson.h"
#include "paging.h"

#include <QDir>
#include <QFile>

#include <rapidjson/error/en.h>

namespace cloudsim {

namespace {

constexpr unsigned ParseFlags = rapidjson::kParseCommentsFlag | rapidjson::kParseTrailingCommasFlag;

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
        if (!answer->IsObject())
            continue;
        indexObject(*answer);
        auto const behaviour = answer->FindMember("@answer");
        if (behaviour != answer->MemberEnd() && behaviour->value.IsString())
            mBehaviours.insert(QString::fromUtf8(behaviour->value.GetString()));
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

rapidjson::Value const* Catalogue::object(QString const& path) const
{
    rapidjson::Value const* answer = mRoutes.value(path, mIds.value(path, mItemUrls.value(path)));
    if (answer && answer->IsString())
        answer = mRoutes.value(QString::fromUtf8(answer->GetString()));
    return answer && answer->IsObject() ? answer : nullptr;
}

bool Catalogue::answer(QString const& path, int page, Answer* out) const
{
    rapidjson::Value const* answer = object(path);
    if (!answer)
        return false;
    auto const status = answer->FindMember("@status");
    out->status = status != answer->MemberEnd() && status->value.IsInt() ? status->value.GetInt() : 200;
    auto const type = answer->FindMember("@type");
    if (type != answer->MemberEnd() && type->value.IsString())
        out->type.assign(type->value.GetString(), type->value.GetStringLength());
    auto const body = answer->FindMember("@body");
    auto const pageSize = answer->FindMember("@pageSize");
    if (body != answer->MemberEnd() && body->value.IsString())
        out->body.assign(body->value.GetString(), body->value.GetStringLength());
    else if (pageSize != answer->MemberEnd() && pageSize->value.IsInt() && pageSize->value.GetInt() > 0)
        out->body = pageOf(*answer, pageSize->value.GetInt(), page, "{base}" + path.toStdString() + "?p=");
    else
        out->body = serialize(*answer);
    return true;
}

QString Catalogue::behaviourOf(QString const& path) const
{
    rapidjson::Value const* answer = object(path);
    auto const behaviour = answer ? answer->FindMember("@answer") : rapidjson::Value::ConstMemberIterator();
    return answer && behaviour != answer->MemberEnd() && behaviour->value.IsString()
               ? QString::fromUtf8(behaviour->value.GetString())
               : QString();
}

bool Catalogue::hasBehaviour(QString const& name) const
{
    return mBehaviours.contains(name);
}

QStringList Catalogue::servicesWith(char const* directive) const
{
    QStringList services;
    for (auto it = mRoutes.cbegin(); it != mRoutes.cend(); ++it) {
        if (it.value()->IsObject() && it.value()->HasMember(directive) && it.key().count('/') == 1)
            services << it.key().mid(1);
    }
    services.sort();
    return services;
}

rapidjson::Value const* Catalogue::homeDirective(QString const& service, char const* directive) const
{
    rapidjson::Value const* home = mRoutes.value('/' + service);
    if (!home || !home->IsObject())
        return nullptr;
    auto const found = home->FindMember(directive);
    return found != home->MemberEnd() && found->value.IsObject() ? &found->value : nullptr;
}

QStringList Catalogue::loginServices() const
{
    return servicesWith("@loginForm");
}

rapidjson::Value const* Catalogue::loginForm(QString const& service) const
{
    return homeDirective(service, "@loginForm");
}

QStringList Catalogue::oauthServices() const
{
    return servicesWith("@oauthLogin");
}

rapidjson::Value const* Catalogue::oauthMessage(QString const& service) const
{
    return homeDirective(service, "@oauthLogin");
}

QList<rapidjson::Value const*> Catalogue::items(QString const& stype, QString const& itype) const
{
    QString const prefix = QString("/id/%1/%2/").arg(stype, itype);
    QStringList keys;
    for (auto it = mIds.cbegin(); it != mIds.cend(); ++it) {
        if (it.key().startsWith(prefix))
            keys << it.key();
    }
    keys.sort();
    QList<rapidjson::Value const*> found;
    for (QString const& key : qAsConst(keys))
        found << mIds.value(key);
    return found;
}

QStringList Catalogue::routes() const
{
    QStringList paths = mRoutes.keys() + mItemUrls.keys();
    paths.sort();
    return paths;
}

} // namespace cloudsim
