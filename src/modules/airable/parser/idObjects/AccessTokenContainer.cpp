#include "AccessTokenContainer.h"

#include "SimpleValue.h"

#include <QDateTime>

namespace airable {

AccessTokenContainer::AccessTokenContainer(QString const& stype, QString const& id)
    : ContainerWithId(stype, QStringLiteral("accesstoken"), id)
{
}

ContainerWithId::Ptr AccessTokenContainer::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new AccessTokenContainer(stype, id));
}

QString AccessTokenContainer::accessToken() const
{
    return stringValueOf(QLatin1String("token"));
}

quint32 AccessTokenContainer::nowSeconds()
{
    return static_cast<quint32>(QDateTime::currentMSecsSinceEpoch() / 1000);
}

unsigned int AccessTokenContainer::accessTime() const
{
    auto time = childByNameAs<SimpleValue<int>>(QLatin1String("time"));
    if (!time)
        return 0;
    if (mFirstReadTime == 0xFFFFFFFF)
        mFirstReadTime = nowSeconds();
    return static_cast<quint32>(time->value()) + nowSeconds() - mFirstReadTime;
}

} // namespace airable
