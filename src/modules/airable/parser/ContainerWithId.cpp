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

QString ContainerWithId::combinedId() const
{
    return QLatin1String("airable://") + stype() + QLatin1Char('/') + itype() + QLatin1Char('/') + mId;
}

QString ContainerWithId::attributes() const
{
    return QLatin1String("itype=\"") + itype() + QLatin1String("\" stype=\"") + stype()
        + QLatin1String("\" itemid=\"") + mId + QLatin1Char('"');
}

} // namespace airable
