#pragma once

#include "BrowsableContentItem.h"

namespace airable {

// A language to browse by.
class LanguageItem : public BrowsableContentItem
{
public:
    typedef portable::SmartPointer<LanguageItem> Ptr;

    LanguageItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    QString iso() const;
};

} // namespace airable
