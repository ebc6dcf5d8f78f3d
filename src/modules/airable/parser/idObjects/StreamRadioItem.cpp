#include "StreamRadioItem.h"

namespace airable {

StreamRadioItem::StreamRadioItem(QString const& stype, QString const& id)
    : StreamItem(stype, QStringLiteral("radio.stream"), id)
{
}

ContainerWithId::Ptr StreamRadioItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new StreamRadioItem(stype, id));
}

} // namespace airable
