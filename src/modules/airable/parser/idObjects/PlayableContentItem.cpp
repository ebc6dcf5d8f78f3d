#include "PlayableContentItem.h"

#include "StreamsContainer.h"

namespace airable {

PlayableContentItem::PlayableContentItem(QString const& stype, QString const& itype, QString const& id)
    : ContentItem(stype, itype, id)
{
}

bool PlayableContentItem::browsable() const
{
    return false;
}

bool PlayableContentItem::playable() const
{
    // The streams member counts even when it is empty.
    return !firstChildOf<StreamsContainer>().isNull();
}

} // namespace airable
