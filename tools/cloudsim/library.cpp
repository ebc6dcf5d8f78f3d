#include "library.h"

#include "cloudjson.h"

namespace cloudsim {

namespace {

QString stringOf(rapidjson::Value const& object, char const* key)
{
    auto const found = object.FindMember(key);
    return found != object.MemberEnd() && found->value.IsString()
               ? QString::fromUtf8(found->value.GetString(), found->value.GetStringLength())
               : QString();
}

// The parts of an object's "id", or an empty list when it has none.
QStringList idOf(rapidjson::Value const& object)
{
    auto const id = object.FindMember("id");
    if (id == object.MemberEnd() || !id->value.IsArray() || id->value.Size() < 3)
        return QStringList();
    QStringList parts;
    for (auto const& part : id->value.GetArray()) {
        if (!part.IsString())
            return QStringList();
        parts << QString::fromUtf8(part.GetString(), part.GetStringLength());
    }
    return parts;
}

QString keyOf(QStringList const& id)
{
    return id.size() < 3 ? QString() : QString("/id/%1/%2/%3").arg(id[0], id[1], id[2]);
}

// The service that a path of an action belongs to: "/tidal/actions/…".
QString serviceOf(QString const& path)
{
    return path.section('/', 1, 1);
}

QString quoted(QString const& title)
{
    return QString::fromUtf8("\u201c") + title + QString::fromUtf8("\u201d");
}

std::string actionAnswer(QString const& service, QString const& word, QString const& title, QString const& message)
{
    rapidjson::Document action(rapidjson::kObjectType);
    auto& alloc = action.GetAllocator();
    action.AddMember("id", idArray(service, "action", word, alloc), alloc);
    action.AddMember("title", text(title, alloc), alloc);
    action.AddMember("message", text(message, alloc), alloc);
    return serialize(action);
}

std::string errorAnswer(QString const& service, QString const& itemId, QString const& message)
{
    rapidjson::Document error(rapidjson::kObjectType);
    auto& alloc = error.GetAllocator();
    error.AddMember("id", idArray(service, "error", itemId, alloc), alloc);
    error.AddMember("message", text(message, alloc), alloc);
    return serialize(error);
}

// An action that names no item is asked wrongly; one whose item the
// catalogue doesn't have asks for nothing that is there.
std::string noItem(Call const& call, QString const& service)
{
    QStringList named = call.params.keys();
    named.removeAll("playlist");
    return named.isEmpty() ? errorAnswer(service, "parameters", "The action names no item.")
                           : errorAnswer(service, "notfound", "There is no such item.");
}

// The path of a URL that the catalogue writes, "{base}/path?query".
QString pathOf(QString const& url)
{
    QString const base = QStringLiteral("{base}");
    return url.startsWith(base) ? url.mid(base.size()).section('?', 0, 0) : QString();
}

QString slot(QString const& listener, QString const& what)
{
    return listener + '\n' + what;
}

} // namespace

Library::Library(Catalogue const& catalogue, Accounts const& accounts) : mCatalogue(catalogue), mAccounts(accounts) {}

bool Library::answer(QString const& behaviour, Call const& call, Answer* out)
{
    out->status = 200;
    if (behaviour == "favourite add" || behaviour == "favourite remove")
        out->body = favourite(call, behaviour == "favourite add");
    else if (behaviour == "favourites")
        out->body = favourites(call);
    else if (behaviour == "playlist choice")
        out->body = playlistChoice(call);
    else if (behaviour == "playlist insert")
        out->body = playlistInsert(call);
    else
        return false;
    return true;
}

Library::Item Library::itemOf(Call const& call, QString const& service) const
{
    QStringList params = call.params.keys();
    params.sort();
    for (QString const& param : qAsConst(params)) {
        if (param == "playlist")
            continue;
        QString const key = keyOf({service, param, call.param(param)});
        if (rapidjson::Value const* value = mCatalogue.object(key))
            return Item{key, param, call.param(param), value};
    }
    return Item();
}

QStringList Library::favouritesOf(QString const& listener, QString const& service) const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mFavourites.value(slot(listener, service));
}

QStringList Library::addedTo(QString const& listener, QString const& playlistKey) const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mAdded.value(slot(listener, playlistKey));
}

std::string Library::favourite(Call const& call, bool add)
{
    QString const service = serviceOf(call.path);
    Item const item = itemOf(call, service);
    if (!item.value)
        return noItem(call, service);
    QString const title = quoted(stringOf(*item.value, "title"));
    bool was = false;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        QStringList& list = mFavourites[slot(mAccounts.listener(call.device, service), service)];
        was = list.contains(item.key);
        if (add && !was)
            list.prepend(item.key);
        else if (!add)
            list.removeAll(item.key);
    }
    if (add)
        return actionAnswer(service, "favorite.add", "Add to favourites",
                            was ? title + " is one of your favourites already." : title + " is one of your favourites now.");
    return actionAnswer(service, "favorite.remove", "Remove from favourites",
                        was ? title + " is no longer one of your favourites." : title + " was not one of your favourites.");
}

std::string Library::favourites(Call const& call) const
{
    rapidjson::Value const* shape = mCatalogue.object(call.path);
    QString const service = shape ? idOf(*shape).value(0) : QString();
    rapidjson::Document listing(rapidjson::kObjectType);
    auto& alloc = listing.GetAllocator();
    if (shape)
        listing.CopyFrom(entryOf(*shape, alloc), alloc);
    rapidjson::Value entries(rapidjson::kArrayType);
    for (QString const& key : favouritesOf(mAccounts.listener(call.device, service), service)) {
        if (rapidjson::Value const* item = mCatalogue.object(key))
            entries.PushBack(entryOf(*item, alloc), alloc);
    }
    rapidjson::Value content(rapidjson::kObjectType);
    content.AddMember("entries", entries, alloc);
    listing.AddMember("content", content, alloc);
    return serialize(listing);
}

std::string Library::playlistChoice(Call const& call) const
{
    QString const service = serviceOf(call.path);
    Item const item = itemOf(call, service);
    if (!item.value)
        return noItem(call, service);
    rapidjson::Document listing(rapidjson::kObjectType);
    auto& alloc = listing.GetAllocator();
    listing.AddMember("id", idArray(service, "listing", "playlist.insert", alloc), alloc);
    listing.AddMember("title", "Add to playlist", alloc);
    rapidjson::Value entries(rapidjson::kArrayType);
    for (rapidjson::Value const* playlist : mCatalogue.items(service, "playlist")) {
        QString const id = idOf(*playlist).value(2);
        QString const url = QString("{base}/%1/actions/playlist.add?playlist=%2&%3=%4")
                                .arg(service, QString::fromStdString(percentEncoded(id)), item.param,
                                     QString::fromStdString(percentEncoded(item.id)));
        rapidjson::Value entry(rapidjson::kObjectType);
        entry.AddMember("id", idArray(service, "action", "playlist.insert." + id, alloc), alloc);
        entry.AddMember("title", text(stringOf(*playlist, "title"), alloc), alloc);
        entry.AddMember("url", text(url, alloc), alloc);
        entries.PushBack(entry, alloc);
    }
    rapidjson::Value content(rapidjson::kObjectType);
    content.AddMember("entries", entries, alloc);
    listing.AddMember("content", content, alloc);
    return serialize(listing);
}

std::string Library::playlistInsert(Call const& call)
{
    QString const service = serviceOf(call.path);
    QString const playlistKey = keyOf({service, "playlist", call.param("playlist")});
    rapidjson::Value const* playlist = mCatalogue.object(playlistKey);
    Item const item = itemOf(call, service);
    if (!item.value)
        return noItem(call, service);
    if (!playlist)
        return errorAnswer(service, "notfound", "There is no such playlist.");
    QStringList own;
    auto const content = playlist->FindMember("content");
    if (content != playlist->MemberEnd() && content->value.IsObject() && content->value.HasMember("entries")
        && content->value["entries"].IsArray()) {
        for (auto const& entry : content->value["entries"].GetArray())
            own << keyOf(idOf(entry));
    }
    bool was = own.contains(item.key);
    {
        std::lock_guard<std::mutex> lock(mMutex);
        QStringList& added = mAdded[slot(mAccounts.listener(call.device, service), playlistKey)];
        was = was || added.contains(item.key);
        if (!was)
            added << item.key;
    }
    QString const what = quoted(stringOf(*item.value, "title"));
    QString const where = quoted(stringOf(*playlist, "title"));
    return actionAnswer(service, "playlist.add", "Add to playlist",
                        was ? QString("%1 is in %2 already.").arg(what, where) : QString("%1 is in %2 now.").arg(what, where));
}

void Library::personalise(Call const& call, Answer* answer) const
{
    if (answer->status != 200 || answer->type != "application/json")
        return;
    bool anyAdded = false;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        anyAdded = !mAdded.isEmpty();
    }
    // Most answers hold nothing that a library changes; they are left as
    // they are, unparsed.
    if (answer->body.find("\"favorite.") == std::string::npos
        && (!anyAdded || answer->body.find("\"playlist\"") == std::string::npos))
        return;
    rapidjson::Document document;
    document.Parse(answer->body.c_str(), answer->body.size());
    if (document.HasParseError() || !document.IsObject())
        return;
    auto& alloc = document.GetAllocator();

    QStringList const id = idOf(document);
    auto const content = document.FindMember("content");
    if (id.value(1) == "playlist" && content != document.MemberEnd() && content->value.IsObject()
        && content->value.HasMember("entries") && content->value["entries"].IsArray()) {
        for (QString const& key : addedTo(mAccounts.listener(call.device, id[0]), keyOf(id))) {
            if (rapidjson::Value const* track = mCatalogue.object(key))
                content->value["entries"].PushBack(entryOf(*track, alloc), alloc);
        }
    }
    showLibrary(call, document, alloc);
    answer->body = serialize(document);
}

// The cloud shows the state of those favourites only that it keeps itself;
// the flags of other actions stay as the catalogue has them.
bool Library::keptHere(QString const& actionUrl) const
{
    QString const behaviour = mCatalogue.behaviourOf(pathOf(actionUrl));
    return behaviour == "favourite add" || behaviour == "favourite remove";
}

void Library::showLibrary(Call const& call, rapidjson::Value& value, rapidjson::Document::AllocatorType& alloc) const
{
    if (value.IsArray()) {
        for (auto& element : value.GetArray())
            showLibrary(call, element, alloc);
        return;
    }
    if (!value.IsObject())
        return;
    auto const actions = value.FindMember("actions");
    QStringList const id = idOf(value);
    if (actions != value.MemberEnd() && actions->value.IsArray() && !id.isEmpty()) {
        bool const favourite = favouritesOf(mAccounts.listener(call.device, id[0]), id[0]).contains(keyOf(id));
        for (auto& action : actions->value.GetArray()) {
            if (!action.IsObject())
                continue;
            QString const word = idOf(action).value(2);
            if ((word != "favorite.add" && word != "favorite.remove") || !keptHere(stringOf(action, "url")))
                continue;
            bool const active = (word == "favorite.add") == favourite;
            auto const flag = action.FindMember("active");
            if (flag != action.MemberEnd())
                flag->value.SetBool(active);
            else
                action.AddMember("active", active, alloc);
        }
    }
    for (auto& member : value.GetObject())
        showLibrary(call, member.value, alloc);
}

} // namespace cloudsim
