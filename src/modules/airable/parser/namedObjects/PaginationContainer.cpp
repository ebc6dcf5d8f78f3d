#include "PaginationContainer.h"

#include "SimpleValue.h"

namespace airable {

PaginationContainer::PaginationContainer()
    : ContainerWithName(QStringLiteral("pagination"))
{
}

ContainerWithName::Ptr PaginationContainer::create(QString const&)
{
    return ContainerWithName::Ptr(new PaginationContainer);
}

QString PaginationContainer::next() const
{
    return stringValueOf(QLatin1String("next"));
}

QString PaginationContainer::prev() const
{
    return stringValueOf(QLatin1String("prev"));
}

QString PaginationContainer::url() const
{
    auto pages = childByNameAs<ContainerWithName>(QLatin1String("pages"));
    return pages ? pages->stringValueOf(QLatin1String("url")) : QString();
}

int PaginationContainer::current() const
{
    auto pages = childByNameAs<ContainerWithName>(QLatin1String("pages"));
    auto current = pages ? pages->childByNameAs<SimpleValue<int>>(QLatin1String("current")) : SimpleValue<int>::Ptr();
    return current ? current->value() : -1;
}

AirableVector<int> PaginationContainer::values() const
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
