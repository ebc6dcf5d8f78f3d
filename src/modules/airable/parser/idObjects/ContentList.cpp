#include "ContentList.h"

#include "ContentContainer.h"

namespace airable {

ContentList::ContentList(QString const& stype, QString const& itype, QString const& id)
    : ContentItem(stype, itype, id)
{
}

EntriesContainer::Ptr ContentList::entriesOf(AirableContainer const& owner)
{
    auto content = owner.firstChildOf<ContentContainer>();
    return content ? content->firstChildOf<EntriesContainer>() : EntriesContainer::Ptr();
}

} // namespace airable
