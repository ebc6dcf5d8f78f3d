#include "StreamItem.h"

namespace airable {

StreamItem::StreamItem(QString const& stype, QString const& id)
    : PlayableContentItem(stype, QStringLiteral("stream"), id)
{
}

ContainerWithId::Ptr StreamItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new StreamItem(stype, id));
}

StreamItem::StreamItem(QString const& stype, QString const& itype, QString const& id)
    : PlayableContentItem(stype, itype, id)
{
}

CodecItem::Ptr StreamItem::codec() const
{
    return firstChildOf<CodecItem>();
}

} // namespace airable
