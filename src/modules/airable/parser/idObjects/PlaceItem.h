#pragma once

#include "BrowsableContentItem.h"

namespace airable {

// A country or region to browse by.
class PlaceItem : public BrowsableContentItem
{
public:
    typedef portable::SmartPointer<PlaceItem> Ptr;

    PlaceItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    QString iso() const;
    QString type() const;
    // The two numbers of "geo" ("a,b"). The second is read from the comma on,
    // so that it comes out as 0; positions have always been read this way.
    QVector<int> geo() const;
};

} // namespace airable
