#include "search.h"

#include "cloudjson.h"
#include "paging.h"

#include <QSet>

namespace cloudsim {

namespace {

int const PageSize = 25;

QString member(rapidjson::Value const& item, char const* key)
{
    auto const found = item.FindMember(key);
    return found != item.MemberEnd() && found->value.IsString()
               ? QString::fromUtf8(found->value.GetString(), found->value.GetStringLength())
               : QString();
}

QString nestedTitle(rapidjson::Value const& item, char const* key)
{
    auto const found = item.FindMember(key);
    return found != item.MemberEnd() && found->value.IsObject() ? member(found->value, "title") : QString();
}

QString itemId(rapidjson::Value const& item)
{
    auto const id = item.FindMember("id");
    return id != item.MemberEnd() && id->value.IsArray() && id->value.Size() > 2 && id->value[2].IsString()
               ? QString::fromUtf8(id->value[2].GetString())
               : QString();
}

bool matches(rapidjson::Value const& item, QString const& wanted)
{
    for (QString const& s : {member(item, "title"), member(item, "description"), member(item, "slogan"),
                             nestedTitle(item, "artist"), nestedTitle(item, "album")}) {
        if (s.contains(wanted, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

std::string emptySearch(QString const& service, QString const& formUrl)
{
    return messageObject(service, "search.empty", "Search", "Type something to search for.",
                         {{"ok", "OK", "{base}" + formUrl}});
}

// The results of a search as a listing, one page of it, with its own URL
// (the query kept) so the client can page on.
std::string resultsPage(char const* service, QString const& title, rapidjson::Value entries,
                        rapidjson::Document& listing, Call const& call, std::string const& query)
{
    auto& alloc = listing.GetAllocator();
    listing.AddMember("id", idArray(service, "listing", "search.results", alloc), alloc);
    listing.AddMember("title", text(title, alloc), alloc);
    std::string const url = "{base}" + call.path.toStdString() + "?" + query;
    listing.AddMember("url", rapidjson::Value(url.c_str(), alloc), alloc);
    rapidjson::Value content(rapidjson::kObjectType);
    content.AddMember("entries", entries, alloc);
    listing.AddMember("content", content, alloc);
    return pageOf(listing, PageSize, call.page(), url + "&p=");
}

} // namespace

Search::Search(Catalogue const& catalogue) : mCatalogue(catalogue) {}

bool Search::answer(QString const& behaviour, Call const& call, Answer* out) const
{
    if (behaviour == "qobuz search")
        *out = qobuz(call);
    else if (behaviour == "radio search")
        *out = radios(call);
    else
        return false;
    return true;
}

Answer Search::qobuz(Call const& call) const
{
    QString wanted = call.param("q").trimmed();
    if (wanted.size() >= 2 && wanted.startsWith('"') && wanted.endsWith('"'))
        wanted = wanted.mid(1, wanted.size() - 2).trimmed();
    Answer answer;
    if (wanted.isEmpty()) {
        answer.body = emptySearch("qobuz", "/qobuz/search");
        return answer;
    }
    rapidjson::Document listing(rapidjson::kObjectType);
    auto& alloc = listing.GetAllocator();
    rapidjson::Value entries(rapidjson::kArrayType);
    for (char const* itype : {"album", "playlist", "track"}) {
        for (rapidjson::Value const* item : mCatalogue.items("qobuz", itype)) {
            if (!member(*item, "url").isEmpty() && matches(*item, wanted))
                entries.PushBack(entryOf(*item, alloc), alloc);
        }
    }
    answer.body = resultsPage("qobuz", QString("Results for \"%1\"").arg(wanted), std::move(entries), listing, call,
                              "q=" + percentEncoded(call.param("q")));
    return answer;
}

Answer Search::radios(Call const& call) const
{
    QString const wanted = call.param("q").trimmed();
    QString const genre = call.param("genre");
    Answer answer;
    if (wanted.isEmpty()) {
        answer.body = emptySearch("airable", "/airable/radios/search");
        return answer;
    }
    // A genre narrows the search to the radios its listing holds.
    bool const anyGenre = genre.isEmpty() || genre == "all";
    QSet<QString> inGenre;
    if (!anyGenre) {
        rapidjson::Value const* listing = mCatalogue.object("/airable/radios/genres/" + genre);
        auto const content = listing ? listing->FindMember("content") : rapidjson::Value::ConstMemberIterator();
        if (listing && content != listing->MemberEnd() && content->value.HasMember("entries")) {
            for (auto const& entry : content->value["entries"].GetArray())
                inGenre << itemId(entry);
        }
    }
    rapidjson::Document listing(rapidjson::kObjectType);
    auto& alloc = listing.GetAllocator();
    rapidjson::Value entries(rapidjson::kArrayType);
    for (rapidjson::Value const* radio : mCatalogue.items("airable", "radio")) {
        if (matches(*radio, wanted) && (anyGenre || inGenre.contains(itemId(*radio))))
            entries.PushBack(entryOf(*radio, alloc), alloc);
    }
    answer.body = resultsPage("airable", QString("Stations for \"%1\"").arg(wanted), std::move(entries), listing, call,
                              "q=" + percentEncoded(wanted) + "&genre=" + percentEncoded(genre));
    return answer;
}

} // namespace cloudsim
