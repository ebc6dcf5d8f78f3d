#include "BrowsableContentItem.h"

namespace airable {

BrowsableContentItem::BrowsableContentItem(QString const& stype, QString const& itype, QString const& id)
    : ContentItem(stype, itype, id)
{
}

bool BrowsableContentItem::browsable() const
{
    return true;
}

bool BrowsableContentItem::playable() const
{
    return false;
}

} // namespace airable
