#include "AirableObjectFactory.h"

#include "SimpleValue.h"
#include "json.h"

#include <QVarLengthArray>

#include <cstring>

#include "AccessTokenContainer.h"
#include "ActionItem.h"
#include "AirableFeeds.h"
#include "AirableRadios.h"
#include "AlbumItem.h"
#include "ArtistItem.h"
#include "ButtonItem.h"
#include "DirectoryItem.h"
#include "EpisodeItem.h"
#include "ErrorItem.h"
#include "FeedContainer.h"
#include "FieldItem.h"
#include "FilterItem.h"
#include "FormItem.h"
#include "GenreItem.h"
#include "LanguageItem.h"
#include "ListingContainer.h"
#include "MessageItem.h"
#include "PlaceItem.h"
#include "PlaylistItem.h"
#include "ProgramItem.h"
#include "RadioItem.h"
#include "RedirectItem.h"
#include "ServiceItem.h"
#include "StreamFeedItem.h"
#include "StreamRadioItem.h"
#include "TrackItem.h"

#include "ButtonsContainer.h"
#include "CodecItem.h"
#include "CollectionItem.h"
#include "ContentContainer.h"
#include "EncryptionItem.h"
#include "EntriesContainer.h"
#include "EventsItem.h"
#include "FieldsContainer.h"
#include "HeadersItem.h"
#include "ImagesContainer.h"
#include "OnAirContainer.h"
#include "PaginationItem.h"
#include "SkipItem.h"
#include "StreamsContainer.h"

namespace airable {

using portable::utils::JsonValue;

static AirableObjectFactory* sInstance = nullptr;

// Real answers stay far below this.
static constexpr int kMaxDepth = 256;

// What a cloud answer's objects take, per byte of the answer, a little above
// what listings take: the first block of an answer's arena is sized by it.
static constexpr std::size_t kArenaBytesPerDocumentByte = 3;

AirableObjectFactory* AirableObjectFactory::instance()
{
    if (!sInstance)
        sInstance = new AirableObjectFactory;
    return sInstance;
}

void AirableObjectFactory::shutdown()
{
    if (!sInstance)
        return;
    sInstance->mIdPrototypes.clear();
    sInstance->mNamePrototypes.clear();
    delete sInstance;
    // No instance() may follow; should one come anyway, it finds no freed
    // factory.
    sInstance = nullptr;
}

// The first registration of a key wins, so the second "place" has no effect.
AirableObjectFactory::AirableObjectFactory()
{
    QString const none;
    registerObject(new AccessTokenContainer(none, none));
    registerObject(new DirectoryItem(none, none));
    registerObject(new ListingContainer(none, none));
    registerObject(new FeedContainer(none, none));
    registerObject(new ServiceItem(none, none));
    registerObject(new ActionItem(none, none));
    registerObject(new RadioItem(none, none));
    registerObject(new PlaceItem(none, none));
    registerObject(new ArtistItem(none, none));
    registerObject(new TrackItem(none, none));
    registerObject(new RedirectItem(none, none));
    registerObject(new PlaylistItem(none, none));
    registerObject(new LanguageItem(none, none));
    registerObject(new EpisodeItem(none, none));
    registerObject(new GenreItem(none, none));
    registerObject(new PlaceItem(none, none));
    registerObject(new StreamRadioItem(none, none));
    registerObject(new StreamFeedItem(none, none));
    registerObject(new ErrorItem(none, none));
    registerObject(new AirableRadios(none, none));
    registerObject(new AirableFeeds(none, none));
    registerObject(new FormItem(none, none));
    registerObject(new FieldItem(none, none));
    registerObject(new ButtonItem(none, none));
    registerObject(new AlbumItem(none, none));
    registerObject(new FilterItem(none, none));
    registerObject(new MessageItem(none, none));
    registerObject(new ProgramItem(none, none));

    registerObject(new PaginationItem);
    registerObject(new CollectionItem);
    registerObject(new CodecItem);
    registerObject(new ContentContainer);
    registerObject(new EntriesContainer);
    registerObject(new ImagesContainer);
    registerObject(new OnAirContainer);
    registerObject(new EventsItem);
    registerObject(new ButtonsContainer);
    registerObject(new FieldsContainer);
    registerObject(new SkipItem);
    registerObject(new StreamsContainer);
    registerObject(new EncryptionItem);
    registerObject(new HeadersItem);
}

void AirableObjectFactory::registerObject(AirableObject::Ptr prototype)
{
    if (auto withId = prototype.dynamicCast<ContainerWithId>()) {
        QString const key = createKey(withId->stype(), withId->itype());
        if (!mIdPrototypes.contains(key))
            mIdPrototypes.insert(key, withId);
    } else if (auto withName = prototype.dynamicCast<ContainerWithName>()) {
        QString const key = withName->name();
        if (!mNamePrototypes.contains(key))
            mNamePrototypes.insert(key, withName);
    }
}

QString AirableObjectFactory::createKey(QString const&, QString const& itype)
{
    return itype;
}

ContainerWithId::Ptr AirableObjectFactory::createContainer(QString const& stype, QString const& itype,
                                                           QString const& id)
{
    auto prototype = mIdPrototypes.find(createKey(stype, itype));
    if (prototype != mIdPrototypes.end())
        return prototype.value()->create(stype, id);
    // The cloud's word is not kept: an unknown type is shown as a listing.
    return ContainerWithId::Ptr(new ListingContainer(stype, id));
}

AirableObject::Ptr AirableObjectFactory::parseJson(portable::SmartPointer<JsonValue> first)
{
    return parseJsonInternal(AirableContainer::Ptr(), first);
}

AirableObject::Ptr AirableObjectFactory::parseJsonInternal(AirableContainer::Ptr container,
                                                           portable::SmartPointer<JsonValue> first)
{
    return build(container.get(), first->value(), QByteArray(), 0);
}

AirableObject::Ptr AirableObjectFactory::parseDocument(portable::utils::JsonParser const& parser)
{
    portable::SmartPointer<portable::utils::RootJsonValue> const root = parser.root();
    QByteArray const& document = root->text();
    return build(nullptr, root->firstChild()->value(), document,
                 std::size_t(document.size()) * kArenaBytesPerDocumentByte);
}

// One walk's arena: objects made on this thread go into it while the walk
// is under way, and the walk holds it while its objects are handed from one
// pointer to the next. What the caller keeps of the tree then holds it; a
// walk that yields nothing leaves nothing behind.
class AirableObjectFactory::Walk
{
public:
    Walk(AirableObjectFactory& factory, QByteArray const& document, std::size_t expectedBytes)
        : mFactory(factory)
        , mArena(new AirableArena(document, expectedBytes))
        , mScope(mArena)
    {
        mArena->addRef();
        mFactory.mArena = mArena;
        mFactory.mBorrowTexts = !document.isNull();
    }
    ~Walk()
    {
        mFactory.mArena = nullptr;
        mArena->release();
    }
    Walk(Walk const&) = delete;
    Walk& operator=(Walk const&) = delete;

private:
    AirableObjectFactory& mFactory;
    AirableArena* const mArena;
    AirableArena::Scope const mScope;
};

AirableObject::Ptr AirableObjectFactory::build(AirableContainer* container, json_value const* first,
                                               QByteArray const& document, std::size_t expectedBytes)
{
    Walk const walkArena(*this, document, expectedBytes);
    return walk(container, first);
}

ContainerWithId::Ptr AirableObjectFactory::parseIdObject(portable::SmartPointer<JsonValue> idValue)
{
    Walk const walkArena(*this, QByteArray(), 0);
    return buildIdObject(idValue->value());
}

AirableText AirableObjectFactory::text(char const* bytes) const
{
    if (!bytes)
        return AirableText();
    return AirableText::borrowed(mBorrowTexts ? bytes : mArena->copy(bytes));
}

// The walk reads the nodes themselves rather than through a handle per step:
// it visits every member of every answer, and is the one place where that
// cost counts. It reads them exactly as JsonValue does: keys as Latin-1,
// strings as UTF-8, integers from Int and Bool nodes, floats from Float nodes.

AirableKeyTable::Entry const& AirableObjectFactory::memberKey(char const* key, AirableKeyTable::Entry const* previous)
{
    // The entry a table keeps stays where it is, so a guess is a pointer to
    // it; the overflow entry is reused, and is never linked.
    AirableKeyTable::Entry const*& guess = previous ? previous->followedBy : mFirstKeys[mDepth % 32];
    if (guess && std::strcmp(guess->bytes, key) == 0)
        return *guess;
    if (AirableKeyTable::Entry const* known = mKeys.find(key)) {
        if (previous != &mOverflowKey)
            guess = known;
        return *known;
    }
    AirableKeyTable::Entry entry;
    entry.name = QString::fromLatin1(key);
    entry.isId = entry.name == QLatin1String("id");
    auto prototype = mNamePrototypes.find(entry.name);
    if (prototype != mNamePrototypes.end())
        entry.prototype = prototype.value().get();
    if (AirableKeyTable::Entry const* kept = mKeys.insert(key, entry)) {
        if (previous != &mOverflowKey)
            guess = kept;
        return *kept;
    }
    mOverflowKey = entry;
    return mOverflowKey;
}

AirableKeyTable::Entry const& AirableObjectFactory::typeWord(json_value const* node)
{
    static AirableKeyTable::Entry const none;
    if (node->type != JSON_STRING)
        return none;
    if (AirableKeyTable::Entry const* known = mTypeWords.find(node->stringValue))
        return *known;
    AirableKeyTable::Entry entry;
    entry.name = QString::fromUtf8(node->stringValue);
    auto prototype = mIdPrototypes.find(createKey(QString(), entry.name));
    if (prototype != mIdPrototypes.end())
        entry.idPrototype = prototype.value().get();
    if (AirableKeyTable::Entry const* kept = mTypeWords.insert(node->stringValue, entry))
        return *kept;
    mOverflowTypeWord = entry;
    return mOverflowTypeWord;
}

static bool hasIdMember(json_value const* first)
{
    for (json_value const* node = first; node; node = node->nextSibling) {
        if (node->name && std::strcmp(node->name, "id") == 0)
            return true;
    }
    return false;
}

ContainerWithId::Ptr AirableObjectFactory::buildIdObject(json_value const* idValue)
{
    if (!idValue || idValue->type != JSON_ARRAY)
        return ContainerWithId::Ptr();
    json_value const* const stypeValue = idValue->firstChild;
    json_value const* const itypeValue = stypeValue ? stypeValue->nextSibling : nullptr;
    json_value const* const idElement = itypeValue ? itypeValue->nextSibling : nullptr;
    if (!idElement)
        return ContainerWithId::Ptr();

    // As createContainer, with the look-up of the itype done once per word.
    // The object is made without its texts, which are then the document's.
    ContainerWithId* const prototype = typeWord(itypeValue).idPrototype;
    ContainerWithId::Ptr object = prototype ? prototype->create(QString(), QString())
                                            : ContainerWithId::Ptr(new ListingContainer(QString(), QString()));
    if (!object)
        return object;
    object->mStype = stypeValue->type == JSON_STRING ? text(stypeValue->stringValue) : AirableText();
    switch (idElement->type) {
    case JSON_INT:
        object->mId = AirableText::borrowed(mArena->copy(QByteArray::number(idElement->intValue).constData()));
        break;
    case JSON_STRING:
        object->mId = text(idElement->stringValue);
        break;
    case JSON_BOOL:
        object->mId = AirableText::borrowed(idElement->intValue != 0 ? "true" : "false");
        break;
    default:
        break;
    }
    walk(object.get(), idValue->nextSibling);
    return object;
}

AirableObject::Ptr AirableObjectFactory::walk(AirableContainer* container, json_value const* first)
{
    // The walk recurses per level of nesting, and so do the accessors that
    // descend into the tree. The parser itself takes
    // any depth, so an answer nested beyond all reason is cut here: its
    // deepest containers stay empty instead of exhausting the stack.
    if (mDepth >= kMaxDepth)
        return AirableObject::Ptr();
    struct DepthGuard
    {
        int& depth;
        explicit DepthGuard(int& d) : depth(d) { ++depth; }
        ~DepthGuard() { --depth; }
    } const guard(mDepth);

    // Members are collected only for an "id" further down the chain; without
    // one they would be dropped anyway, and most objects carry "id" in front.
    bool const idFollows = hasIdMember(first);
    QVarLengthArray<AirableObject*, 16> collected;
    ContainerWithId::Ptr result;
    AirableKeyTable::Entry const* previousKey = nullptr;
    for (json_value const* value = first; value; value = value->nextSibling) {
        AirableKeyTable::Entry const* key = value->name ? &memberKey(value->name, previousKey) : nullptr;
        previousKey = key;
        // Everything behind "id" belongs to the identified object, which
        // buildIdObject makes from there on.
        if (key && key->isId) {
            result = buildIdObject(value);
            break;
        }

        int const type = value->type;
        bool const unnamed = !value->name || !*value->name;
        // Every object made here lives in the walk's arena, which holds it:
        // plain pointers are enough.
        AirableObject* child;
        if (key && key->prototype) {
            ContainerWithName::Ptr const record = key->prototype->create(key->name);
            if (type == JSON_ARRAY || type == JSON_OBJECT)
                fill(record.get(), value);
            child = record.get();
        } else if (unnamed && type == JSON_OBJECT) {
            if (hasIdMember(value->firstChild)) {
                // An identified array element appends itself to `container`.
                walk(container, value->firstChild);
                continue;
            }
            auto* const element = new (*mArena) ContainerWithName(mArena, AirableText());
            fill(element, value);
            child = element;
        } else {
            switch (type) {
            case JSON_STRING:
                child = new (*mArena) SimpleValue<QString>(mArena, text(value->name), text(value->stringValue));
                break;
            case JSON_INT:
                child = new (*mArena) SimpleValue<int>(mArena, text(value->name), static_cast<int>(value->intValue));
                break;
            case JSON_BOOL:
                child = new (*mArena) SimpleValue<bool>(mArena, text(value->name), value->intValue != 0);
                break;
            case JSON_FLOAT:
                child = new (*mArena) SimpleValue<float>(mArena, text(value->name), value->floatValue);
                break;
            default: {
                auto* const member = new (*mArena) ContainerWithName(mArena, text(value->name));
                fill(member, value);
                child = member;
                break;
            }
            }
        }
        if (idFollows)
            collected.append(child);
        if (container)
            container->appendChild(child);
    }

    if (result) {
        if (container)
            container->appendChild(result);
        // Members in front of "id" come last, behind those that followed it.
        for (AirableObject* child : collected)
            result->appendChild(child);
    }
    return result;
}

void AirableObjectFactory::fill(AirableContainer* container, json_value const* value)
{
    int count = 0;
    for (json_value const* node = value->firstChild; node; node = node->nextSibling)
        ++count;
    if (count == 0)
        return;
    container->reserveChildren(count);
    walk(container, value->firstChild);
}

} // namespace airable
