#include "paging.h"

#include "cloudjson.h"

#include <algorithm>

namespace cloudsim {

std::string pageOf(rapidjson::Value const& listing, int limit, int page, std::string const& pageUrl)
{
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

    auto const url = [&alloc](std::string const& s) { return rapidjson::Value(s.c_str(), alloc); };
    rapidjson::Value collection(rapidjson::kObjectType);
    collection.AddMember("size", total, alloc).AddMember("limit", limit, alloc).AddMember("offset", offset, alloc);
    rapidjson::Value values(rapidjson::kArrayType);
    for (int p = 1; p <= pages; ++p)
        values.PushBack(p, alloc);
    rapidjson::Value pagesObject(rapidjson::kObjectType);
    pagesObject.AddMember("url", url(pageUrl + ":value:"), alloc)
        .AddMember("current", page, alloc)
        .AddMember("values", values, alloc)
        .AddMember("replace", ":value:", alloc);
    rapidjson::Value pagination(rapidjson::kObjectType);
    if (page < pages)
        pagination.AddMember("next", url(pageUrl + std::to_string(page + 1)), alloc);
    if (page > 1)
        pagination.AddMember("prev", url(pageUrl + std::to_string(page - 1)), alloc);
    pagination.AddMember("pages", pagesObject, alloc);
    content->value.AddMember("collection", collection, alloc).AddMember("pagination", pagination, alloc);
    return serialize(result);
}

} // namespace cloudsim
