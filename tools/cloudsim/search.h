#pragma once

#include "call.h"
#include "catalogue.h"

namespace cloudsim {

// Results of the search forms, made from what was typed: Qobuz's albums,
// playlists and tracks ("/qobuz/search/results?q=..."; its devices send the
// text in double quotes), and the radios, of one genre or all
// ("/airable/radios/search/results?q=...&genre=..."). Results come in pages
// of 25; an empty text answers a message.
class Search
{
public:
    explicit Search(Catalogue const& catalogue);

    // False for paths that are no search.
    bool answer(Call const& call, Answer* out) const;

private:
    Answer qobuz(Call const& call) const;
    Answer radios(Call const& call) const;

    Catalogue const& mCatalogue;
};

} // namespace cloudsim
