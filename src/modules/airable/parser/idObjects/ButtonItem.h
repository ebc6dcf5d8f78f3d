#pragma once

#include "ContentItem.h"

namespace airable {

// A button of a form or a message; its item id says what it does.
class ButtonItem : public ContentItem
{
public:
    typedef portable::SmartPointer<ButtonItem> Ptr;

    ButtonItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    bool browsable() const override;
    bool playable() const override;
    virtual QString baseUrl() const;
};

} // namespace airable
