#pragma once

#include <rapidjson/document.h>

#include <string>

namespace cloudsim {

// One page of a listing, as the cloud cuts a long one: "content.entries"
// holds the page's entries, "collection" says where the page lies and
// "pagination" how to ask for its neighbours and for any page by number.
// pageUrl is the listing's URL up to the page number, e.g.
// "{base}/airable/radios/all?p="; page counts from 1.
std::string pageOf(rapidjson::Value const& listing, int limit, int page, std::string const& pageUrl);

} // namespace cloudsim
