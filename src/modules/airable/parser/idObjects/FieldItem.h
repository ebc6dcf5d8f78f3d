#pragma once

#include "ContentItem.h"
#include <QPair>

namespace airable {

// An input of a form. Its item id is the name under which the value is sent.
class FieldItem : public ContentItem
{
public:
    typedef portable::SmartPointer<FieldItem> Ptr;

    FieldItem(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    bool browsable() const override;
    bool playable() const override;
    QString type() const;
    QString value() const;
    bool required() const;
    // The key of the option at `index`, or empty when out of range.
    QString optionName(int index) const;
    // Key (sent to the cloud) and text (shown) of each option, in order.
    QVector<QPair<QString, QString>> options() const;
};

} // namespace airable
