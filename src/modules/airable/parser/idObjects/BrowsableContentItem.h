#pragma once

#include "ContentItem.h"

namespace airable {

// An item that only opens.
class BrowsableContentItem : public ContentItem
{
public:
    typedef portable::SmartPointer<BrowsableContentItem> Ptr;

    BrowsableContentItem(QString const& stype, QString const& itype, QString const& id);

    bool browsable() const override;
    bool playable() const override;
};

} // namespace airable
