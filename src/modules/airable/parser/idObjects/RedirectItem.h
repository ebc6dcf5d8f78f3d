#pragma once

#include "ContainerWithId.h"
#include "ContentItem.h"
#include "EncryptionItem.h"
#include "EventsItem.h"

namespace airable {

// The answer for a stream: the real URL, its encryption and event URLs.
class RedirectItem : public ContainerWithId
{
public:
    typedef portable::SmartPointer<RedirectItem> Ptr;

    RedirectItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    QString url() const;
    EventsItem::Ptr events() const;
    EncryptionItem::Ptr encryption() const;
    ContentItem::Ptr content() const;
};

} // namespace airable
