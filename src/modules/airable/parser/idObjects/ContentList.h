#pragma once

#include "ContentItem.h"
#include "EntriesContainer.h"

namespace airable {

// An item with entries of its own, under "content" and "entries".
class ContentList : public ContentItem
{
public:
    typedef portable::SmartPointer<ContentList> Ptr;

    ContentList(QString const& stype, QString const& itype, QString const& id);

    virtual AirableVector<ContentItem::Ptr> items() const = 0;

    // The entries container in the first content container of `owner`, or null.
    static EntriesContainer::Ptr entriesOf(AirableContainer const& owner);

protected:
    // The entries of this list that are of class T, in order.
    template <typename T>
    AirableVector<ContentItem::Ptr> entriesOfClass() const
    {
        AirableVector<ContentItem::Ptr> result;
        if (EntriesContainer::Ptr entries = entriesOf(*this)) {
            for (auto const& entry : entries->childrenOf<T>())
                result.append(entry);
        }
        return result;
    }
};

} // namespace airable
