#pragma once

#include "ContentList.h"
#include "ButtonItem.h"
#include "CollectionItem.h"
#include "PaginationItem.h"

namespace airable {

// A page of a listing. Also what the cloud's unknown type words become.
class ListingContainer : public ContentList
{
public:
    typedef portable::SmartPointer<ListingContainer> Ptr;

    ListingContainer(QString const& stype, QString const& id);

    ContainerWithId::Ptr create(QString const& stype, QString const& id) override;

    bool browsable() const override;
    bool playable() const override;
    bool containerPlayable() const override;
    AirableVector<ContentItem::Ptr> items() const override;

    using ContentItem::url;
    // The page URL of the pagination with the page number filled in.
    virtual QString url(unsigned int page) const;
    virtual PaginationItem::Ptr pagination() const;

    static QString modifyUrlForPage(QString url, unsigned int page);
    CollectionItem::Ptr collection() const;
    // The year of release; `*ok` tells whether the listing has one. The
    // ownership release stays reachable beside it.
    using AirableObject::release;
    int release(bool* ok) const;

    ButtonItem::Ptr button(QString const& name) const;
    // kind 1: the button that goes on, kind 2: the one that goes back.
    ButtonItem::Ptr button(int kind) const;

protected:
    // For subclasses, which bring their own type word.
    ListingContainer(QString const& stype, QString const& itype, QString const& id);
};

} // namespace airable
