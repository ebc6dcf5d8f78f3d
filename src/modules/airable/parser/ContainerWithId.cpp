#include "ContainerWithId.h"

namespace airable {

ContainerWithId::ContainerWithId(QString const& stype, QString const& itype, QString const& id)
    : mStype(stype)
    , mItype(itype)
    , mId(id)
{
}

void ContainerWithId::dump(int const& depth)
{
    for (AirableObject::Ptr const& child : mChildren)
        child->dump(depth + 1);
}

ContainerWithId::Ptr ContainerWithId::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new ContainerWithId(stype, mItype, id));
}

// Every row asks for ids, so the text is put together in one allocation.
QString ContainerWithId::combinedId() const
{
    QString const serviceType = stype();
    QString const itemType = itype();
    QLatin1String const scheme("airable://");
    QString id;
    id.reserve(scheme.size() + serviceType.size() + itemType.size() + mId.size() + 2);
    id.append(scheme).append(serviceType).append(QLatin1Char('/')).append(itemType).append(QLatin1Char('/')).append(mId);
    return id;
}

QString ContainerWithId::attributes() const
{
    return QLatin1String("itype=\"") + itype() + QLatin1String("\" stype=\"") + stype()
        + QLatin1String("\" itemid=\"") + mId + QLatin1Char('"');
}

} // namespace airable
