#include "ProgramItem.h"

#include "SimpleValue.h"

namespace airable {

ProgramItem::ProgramItem(QString const& stype, QString const& id)
    : ListingContainer(stype, QStringLiteral("program"), id)
{
}

ContainerWithId::Ptr ProgramItem::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new ProgramItem(stype, id));
}

bool ProgramItem::browsable() const
{
    return false;
}

bool ProgramItem::playable() const
{
    return true;
}

QString ProgramItem::title() const
{
    AirableObject::Ptr const title = childByName(QLatin1String("title"));
    if (auto container = title.dynamicCast<AirableContainer>()) {
        auto text = container->firstChildOf<SimpleValue<QString>>();
        return text ? text->value() : QString();
    }
    auto text = title.dynamicCast<SimpleValue<QString>>();
    return text ? text->value() : QString();
}

SkipItem::Ptr ProgramItem::skip() const
{
    return firstChildOf<SkipItem>();
}

AirableVector<TrackItem::Ptr> ProgramItem::tracks() const
{
    EntriesContainer::Ptr const entries = entriesOf(*this);
    return entries ? entries->childrenOf<TrackItem>() : AirableVector<TrackItem::Ptr>();
}

} // namespace airable
