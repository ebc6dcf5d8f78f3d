// Any bytes through the parser and the factory, then every accessor of every
// object the factory made. Nothing may crash, leak or read out of bounds.
#include "AirableObjectFactory.h"
#include "JsonParser.h"
#include "SimpleValue.h"

#include "AccessTokenContainer.h"
#include "ActionItem.h"
#include "AlbumItem.h"
#include "ArtistItem.h"
#include "ButtonItem.h"
#include "EpisodeItem.h"
#include "ErrorItem.h"
#include "FeedContainer.h"
#include "FieldItem.h"
#include "FormItem.h"
#include "LanguageItem.h"
#include "MessageItem.h"
#include "PlaceItem.h"
#include "ProgramItem.h"
#include "RadioItem.h"
#include "RedirectItem.h"
#include "StreamItem.h"
#include "TrackItem.h"

#include "ButtonsContainer.h"
#include "CodecItem.h"
#include "CollectionItem.h"
#include "EncryptionItem.h"
#include "EventsItem.h"
#include "FieldsContainer.h"
#include "HeadersItem.h"
#include "ImagesContainer.h"
#include "OnAirContainer.h"
#include "PaginationItem.h"
#include "SkipItem.h"

#include <QSet>

#include <log4cplus/logger.h>

#include <cstddef>
#include <cstdint>

using namespace airable;

namespace {

// Keeps results alive so that no accessor call is optimised away.
volatile std::size_t gSink = 0;

void use(QString const& text)
{
    gSink = gSink + static_cast<std::size_t>(text.size());
}

void use(qint64 number)
{
    gSink = gSink + static_cast<std::size_t>(number);
}

template <typename T>
void use(portable::SmartPointer<T> const& object)
{
    gSink = gSink + (object ? 1 : 0);
}

template <typename T>
void use(QVector<T> const& list)
{
    gSink = gSink + static_cast<std::size_t>(list.size());
}

void exerciseContentItem(ContentItem& item)
{
    use(item.title());
    use(item.url());
    use(item.imageUrl());
    use(item.description());
    use(item.browsable());
    use(item.playable());
    use(item.containerPlayable());
    for (ActionItem::Ptr const& action : item.actions())
        use(item.actionWithId(action->name()));
    use(item.actionWithId(QStringLiteral("missing")));

    if (auto* list = dynamic_cast<ContentList*>(&item))
        use(list->items());
    if (auto* listing = dynamic_cast<ListingContainer*>(&item)) {
        use(listing->pagination());
        use(listing->url(0u));
        use(listing->url(4294967295u));
        use(listing->collection());
        bool ok = false;
        use(listing->release(&ok));
        for (int kind = 0; kind <= 3; ++kind)
            use(listing->button(kind));
        use(listing->button(QStringLiteral("submit")));
    }
    if (auto* button = dynamic_cast<ButtonItem*>(&item))
        use(button->baseUrl());
    if (auto* field = dynamic_cast<FieldItem*>(&item)) {
        use(field->type());
        use(field->value());
        use(field->required());
        use(field->options());
        for (int index = -1; index <= field->options().size(); ++index)
            use(field->optionName(index));
    }
    if (auto* place = dynamic_cast<PlaceItem*>(&item)) {
        use(place->iso());
        use(place->type());
        use(place->geo());
    }
    if (auto* language = dynamic_cast<LanguageItem*>(&item))
        use(language->iso());
    if (auto* stream = dynamic_cast<StreamItem*>(&item))
        use(stream->codec());
    if (auto* track = dynamic_cast<TrackItem*>(&item)) {
        use(track->streams());
        use(track->duration());
        use(track->events());
        use(track->artistId());
        use(track->artistTitle());
        use(track->artistImageUrl());
        use(track->albumId());
        use(track->albumTitle());
        use(track->albumImageUrl());
    }
    if (auto* episode = dynamic_cast<EpisodeItem*>(&item)) {
        use(episode->streams());
        use(episode->duration());
        use(episode->date());
    }
    if (auto* album = dynamic_cast<AlbumItem*>(&item)) {
        use(album->artistId());
        use(album->artistTitle());
        use(album->artistImageUrl());
    }
    if (auto* feed = dynamic_cast<FeedContainer*>(&item)) {
        use(feed->slogan());
        use(feed->date());
        use(feed->place());
        use(feed->language());
        use(feed->genres());
        use(feed->episodes());
    }
    if (auto* form = dynamic_cast<FormItem*>(&item))
        use(form->signUpLink());
    if (auto* message = dynamic_cast<MessageItem*>(&item)) {
        use(message->type());
        use(message->perform());
        use(message->reaction());
        use(message->hasReaction());
    }
    if (auto* program = dynamic_cast<ProgramItem*>(&item)) {
        use(program->skip());
        use(program->tracks());
    }
    if (auto* radio = dynamic_cast<RadioItem*>(&item)) {
        use(radio->slogan());
        use(radio->place());
        use(radio->language());
        use(radio->genres());
        use(radio->onAirItems());
        use(radio->streams());
        use(radio->streamAttributes());
    }
}

void exerciseIdentified(ContainerWithId& object)
{
    use(object.combinedId());
    use(object.attributes());
    use(object.create(object.stype(), object.name()));
    if (auto* item = dynamic_cast<ContentItem*>(&object))
        exerciseContentItem(*item);
    if (auto* token = dynamic_cast<AccessTokenContainer*>(&object)) {
        use(token->accessToken());
        use(static_cast<qint64>(token->accessTime()));
    }
    if (auto* action = dynamic_cast<ActionItem*>(&object)) {
        use(action->title());
        use(action->url());
        use(action->action());
        use(action->message());
        use(action->active());
        use(action->perform());
        use(action->reaction());
    }
    if (auto* error = dynamic_cast<ErrorItem*>(&object)) {
        use(error->message());
        use(error->reaction());
        use(error->hasReaction());
    }
    if (auto* redirect = dynamic_cast<RedirectItem*>(&object)) {
        use(redirect->url());
        use(redirect->events());
        use(redirect->encryption());
        use(redirect->content());
    }
}

void exerciseNamed(ContainerWithName& record)
{
    use(record.create(record.name()));
    if (auto* codec = dynamic_cast<CodecItem*>(&record)) {
        use(codec->codecName());
        use(codec->bitrate());
    }
    if (auto* collection = dynamic_cast<CollectionItem*>(&record)) {
        use(collection->size());
        use(collection->limit());
        use(collection->offset());
    }
    if (auto* encryption = dynamic_cast<EncryptionItem*>(&record)) {
        use(encryption->type());
        use(encryption->headers());
    }
    if (auto* events = dynamic_cast<EventsItem*>(&record)) {
        use(events->start());
        use(events->pause());
        use(events->stop());
        use(events->error());
        use(static_cast<qint64>(events->events().size()));
    }
    if (auto* buttons = dynamic_cast<ButtonsContainer*>(&record))
        use(buttons->items());
    if (auto* fields = dynamic_cast<FieldsContainer*>(&record)) {
        use(fields->items());
        use(fields->hiddenFields());
    }
    if (auto* headers = dynamic_cast<HeadersItem*>(&record)) {
        use(headers->key());
        use(headers->manifest());
        use(headers->audio());
    }
    if (auto* images = dynamic_cast<ImagesContainer*>(&record)) {
        for (ImageItem::Ptr const& image : images->images()) {
            use(image->src());
            use(image->width());
            use(image->height());
        }
        use(ImagesContainer::firstImageUrl(*images));
    }
    if (auto* onAir = dynamic_cast<OnAirContainer*>(&record)) {
        for (OnAirItem::Ptr const& item : onAir->items()) {
            use(item->artist());
            use(item->track());
        }
    }
    if (auto* pagination = dynamic_cast<PaginationItem*>(&record)) {
        use(pagination->next());
        use(pagination->prev());
        use(pagination->url());
        use(pagination->current());
        use(pagination->replace());
        use(pagination->values());
    }
    if (auto* skip = dynamic_cast<SkipItem*>(&record)) {
        use(skip->available());
        use(skip->statusUrl());
        use(skip->skipUrl());
    }
}

// Members in front of an "id" are shared by two owners, so the tree is a
// graph; each object is visited once, or nesting would make it exponential.
void exercise(AirableObject::Ptr const& object, QSet<AirableObject*>& visited)
{
    if (visited.contains(object.get()))
        return;
    visited.insert(object.get());
    use(object->name());
    object->dump(0);
    if (auto value = object.dynamicCast<SimpleValue<QString>>())
        use(value->value());
    auto container = object.dynamicCast<AirableContainer>();
    if (!container)
        return;
    use(container->browsable());
    use(container->childByName(QStringLiteral("title")));
    if (auto* identified = dynamic_cast<ContainerWithId*>(container.get()))
        exerciseIdentified(*identified);
    if (auto* record = dynamic_cast<ContainerWithName*>(container.get()))
        exerciseNamed(*record);
    for (AirableObject::Ptr const& child : container->children())
        exercise(child, visited);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // SkipItem reports missing members; the fuzzer wants no output.
    log4cplus::Logger::getInstance("CB_Airable").setLogLevel(log4cplus::OFF_LOG_LEVEL);
    AirableObjectFactory::instance();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    AirableObject::Ptr root;
    {
        portable::utils::JsonParser parser;
        parser.parse(QByteArray(reinterpret_cast<char const*>(data), static_cast<int>(size)));
        root = AirableObjectFactory::instance()->parseJson(parser.root()->firstChild());
    }
    // The parser is gone: whatever the tree holds must stand on its own.
    if (root) {
        QSet<AirableObject*> visited;
        exercise(root, visited);
    }
    return 0;
}
