#pragma once

#include "AirableObject.h"

namespace airable {

// An object the cloud identifies by its "id" array [stype, itype, itemid].
class ContainerWithId : public AirableContainer
{
public:
    typedef portable::SmartPointer<ContainerWithId> Ptr;

    ContainerWithId(QString const& stype, QString const& itype, QString const& id);

    // The item id: an identified child is found by it.
    QString name() const override { return mId.toString(AirableText::Utf8); }
    bool hasName(QLatin1String key) const override { return mId.equals(key, AirableText::Utf8); }
    void dump(int const& depth) override;

    // A new object of the receiver's own class; prototypes of the factory
    // answer this.
    virtual ContainerWithId::Ptr create(QString const& stype, QString const& id);
    virtual QString stype() const { return mStype.toString(AirableText::Utf8); }
    virtual QString itype() const { return mItype.toString(AirableText::Utf8); }

    // The item's URI: "airable://" stype "/" itype "/" itemid.
    QString combinedId() const;
    QString attributes() const;

protected:
    // The factory gives an object of an answer the texts of its document.
    friend class AirableObjectFactory;

    AirableText mStype;
    AirableText mItype;
    AirableText mId;
};

} // namespace airable
