#include "PaginationItem.h"

#include "SimpleValue.h"

namespace airable {

PaginationItem::PaginationItem()
    : ContainerWithName(QStringLiteral("pagination"))
{
}

ContainerWithName::Ptr PaginationItem::create(QString const&)
{
    return ContainerWithName::Ptr(new PaginationItem);
}

QString PaginationItem::next() const
{
    return stringValueOf(QLatin1String("next"));
}

QString PaginationItem::prev() const
{
    return stringValueOf(QLatin1String("prev"));
}

QString PaginationItem::url() const
{
    auto pages = childByNameAs<ContainerWithName>(QLatin1String("pages"));
    return pages ? pages->stringValueOf(QLatin1String("url")) : QString();
}

int PaginationItem::current() const
{
    auto pages = childByNameAs<ContainerWithName>(QLatin1String("pages"));
    auto current = pages ? pages->childByNameAs<SimpleValue<int>>(QLatin1String("current")) : SimpleValue<int>::Ptr();
    return current ? current->value() : -1;
}

QString PaginationItem::replace() const
{
    auto pages = childByNameAs<ContainerWithName>(QLatin1String("pages"));
    return pages ? pages->stringValueOf(QLatin1String("replace")) : QString();
}

AirableVector<int> PaginationItem::values() const
{
    AirableVector<int> result;
    auto pages = childByNameAs<ContainerWithName>(QLatin1String("pages"));
    auto values = pages ? pages->childByNameAs<ContainerWithName>(QLatin1String("values")) : ContainerWithName::Ptr();
    if (values) {
        for (SimpleValue<int>::Ptr const& value : values->childrenOf<SimpleValue<int>>())
            result.append(value->value());
    }
    return result;
}

} // namespace airable
