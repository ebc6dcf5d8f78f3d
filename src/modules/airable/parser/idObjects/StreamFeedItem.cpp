#include "StreamFeedItem.h"

namespace airable {

StreamFeedItem::StreamFeedItem(QString const& stype, QString const& id)
    : StreamItem(stype, QStringLiteral("feed.stream"), id)
{
}

ContainerWithId::Ptr StreamFeedItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new StreamFeedItem(stype, id));
}

} // namespace airable
