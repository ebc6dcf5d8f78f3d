#pragma once

#include "AirableKeyTable.h"
#include "AirableObject.h"
#include "ContainerWithId.h"
#include "ContainerWithName.h"
#include "JsonParser.h"
#include "JsonValue.h"

#include <QByteArray>

#include <QMap>

namespace airable {

// Turns a parsed cloud answer into a tree of objects in one walk. An object
// with an "id" array [stype, itype, itemid] becomes the class registered for
// its itype; a member becomes the class registered for its key, or a generic
// container or value. Each walk builds its tree in an arena of its own; the
// tree refers to no node of the parse, only, for a whole document, to its
// text.
class AirableObjectFactory
{
public:
    // Made on first use, without a lock: the configuration brings it up on the
    // worker's thread before any request exists.
    static AirableObjectFactory* instance();
    // Releases the prototypes and the factory. instance() must not follow.
    static void shutdown();

    // `first` is the first member of the document's root. Null unless the root
    // is an identified object.
    AirableObject::Ptr parseJson(portable::SmartPointer<portable::utils::JsonValue> first);
    // The same for the root of a whole parse. String values then stay in the
    // parser's document, which the tree shares, instead of being copied.
    AirableObject::Ptr parseDocument(portable::utils::JsonParser const& parser);
    AirableObject::Ptr parseJsonInternal(AirableContainer::Ptr container,
                                         portable::SmartPointer<portable::utils::JsonValue> first);
    ContainerWithId::Ptr parseIdObject(portable::SmartPointer<portable::utils::JsonValue> idValue);
    ContainerWithId::Ptr createContainer(QString const& stype, QString const& itype, QString const& id);
    // Prototypes are shared by all services: the key is the itype alone.
    QString createKey(QString const& stype, QString const& itype);
    void registerObject(AirableObject::Ptr prototype);

private:
    class Walk;

    AirableObjectFactory();
    // Builds the tree of `first` and its siblings in an arena of its own.
    AirableObject::Ptr build(AirableContainer* container, json_value const* first, QByteArray const& document,
                             std::size_t expectedBytes);
    AirableObject::Ptr walk(AirableContainer* container, json_value const* first);
    // A key or string of the walk's document, as the arena's objects hold it.
    AirableText text(char const* bytes) const;
    ContainerWithId::Ptr buildIdObject(json_value const* idValue);
    // Walks the members of `value` into `container`.
    void fill(AirableContainer* container, json_value const* value);
    // The entry of a member's key; `previous` is the entry of the member
    // before it in the same object, if any.
    AirableKeyTable::Entry const& memberKey(char const* key, AirableKeyTable::Entry const* previous);
    // An stype or itype: the entry of a String node, an empty one otherwise.
    AirableKeyTable::Entry const& typeWord(json_value const* node);

    ~AirableObjectFactory() = default;
    AirableObjectFactory(AirableObjectFactory const&) = delete;
    AirableObjectFactory& operator=(AirableObjectFactory const&) = delete;

    QMap<QString, ContainerWithId::Ptr> mIdPrototypes;
    QMap<QString, ContainerWithName::Ptr> mNamePrototypes;
    AirableKeyTable mKeys;
    AirableKeyTable mTypeWords;
    // The answers for a word that came when its table was full; each is used
    // before the next word is looked up.
    AirableKeyTable::Entry mOverflowKey;
    AirableKeyTable::Entry mOverflowTypeWord;
    // Nesting of the walk under way.
    int mDepth = 0;
    // Per level of nesting, the key of the first member of the last object
    // walked there, as a guess for the next object.
    AirableKeyTable::Entry const* mFirstKeys[32] = {};
    // The arena of the walk under way, and whether its texts may stay in the
    // document rather than be copied into the arena.
    AirableArena* mArena = nullptr;
    bool mBorrowTexts = false;
};

} // namespace airable
