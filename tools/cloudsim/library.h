#pragma once

#include "accounts.h"
#include "call.h"
#include "catalogue.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <mutex>

namespace cloudsim {

// What listeners keep of a service and change through the actions on its
// rows: favourites, and tracks added to playlists. Each listener
// (Accounts::listener) has a library of its own per service. Items are
// named in the actions' URLs by their type word and id, as in
// "?track=td-al1t1" or "?radio=r1001", and must be in the catalogue. At the
// paths whose answer in the catalogue is one of these behaviours:
// - "favourite add", "favourite remove": adds the item to the favourites of
//   the service (the path's first part), or takes it out, and answers an
//   action with a message;
// - "favourites": the listing of the favourites, newest first, of the
//   service that the answer's "id" names, with the answer's id and title;
// - "playlist choice": the service's playlists, each an action whose URL
//   ("/<service>/actions/playlist.add?playlist=<id>&<type>=<id>") adds the
//   item to it;
// - "playlist insert": adds the item to the playlist, after its own tracks,
//   and answers an action with a message.
// Every answer is then made to show the library of whoever asks
// (personalise): the tracks added to a playlist, and the "active" flags of
// the actions "favorite.add" (on while the item is a favourite) and
// "favorite.remove" (on while it isn't) whose URLs lead to these
// behaviours. Safe to use from any thread.
class Library
{
public:
    Library(Catalogue const& catalogue, Accounts const& accounts);

    // False for behaviours that are no action on a library.
    bool answer(QString const& behaviour, Call const& call, Answer* out);
    void personalise(Call const& call, Answer* answer) const;

private:
    struct Item
    {
        QString key; // "/id/<service>/<type>/<id>"
        QString param;
        QString id;
        rapidjson::Value const* value = nullptr;
    };

    Item itemOf(Call const& call, QString const& service) const;
    std::string favourite(Call const& call, bool add);
    std::string favourites(Call const& call) const;
    std::string playlistChoice(Call const& call) const;
    std::string playlistInsert(Call const& call);
    bool keptHere(QString const& actionUrl) const;
    void showLibrary(Call const& call, rapidjson::Value& value, rapidjson::Document::AllocatorType& alloc) const;
    QStringList favouritesOf(QString const& listener, QString const& service) const;
    QStringList addedTo(QString const& listener, QString const& playlistKey) const;

    Catalogue const& mCatalogue;
    Accounts const& mAccounts;
    mutable std::mutex mMutex;
    // By listener and service, and by listener and playlist.
    QHash<QString, QStringList> mFavourites;
    QHash<QString, QStringList> mAdded;
};

} // namespace cloudsim
