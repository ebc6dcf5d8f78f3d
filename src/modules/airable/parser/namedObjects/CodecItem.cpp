#include "CodecItem.h"

namespace airable {

CodecItem::CodecItem()
    : ContainerWithName(QStringLiteral("codec"))
{
}

ContainerWithName::Ptr CodecItem::create(QString const&)
{
    return ContainerWithName::Ptr(new CodecItem);
}

QString CodecItem::codecName() const
{
    return stringValueOf(QLatin1String("name"));
}

int CodecItem::bitrate() const
{
    return intValueOf(QLatin1String("bitrate"));
}

} // namespace airable
