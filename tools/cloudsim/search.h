#pragma once

#include "call.h"
#include "catalogue.h"

namespace cloudsim {

// Results of the search forms, made from what was typed, at the paths whose
// answer in the catalogue is one of these behaviours:
// - "qobuz search": Qobuz's albums, playlists and tracks ("?q=..."; its
//   devices send the text in double quotes);
// - "radio search": the radios, of one genre or of all ("?q=...&genre=...").
// Results come in pages of 25; an empty text answers a message.
class Search
{
public:
    explicit Search(Catalogue const& catalogue);

    // False for behaviours that are no search.
    bool answer(QString const& behaviour, Call const& call, Answer* out) const;

private:
    Answer qobuz(Call const& call) const;
    Answer radios(Call const& call) const;

    Catalogue const& mCatalogue;
};

} // namespace cloudsim
