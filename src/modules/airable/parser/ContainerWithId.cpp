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
    for (AirableObject* child : *this)
        child->dump(depth + 1);
}

ContainerWithId::Ptr ContainerWithId::create(QString const& stype, QString const& id)
{
    return ContainerWithId::Ptr(new ContainerWithId(stype, itype(), id));
}

// Every row asks for ids, so the text is put together in one allocation,
// straight from the object's texts.
QString ContainerWithId::combinedId() const
{
    QString id;
    id.reserve(64);
    id.append(QLatin1String("airable://"));
    mStype.appendTo(id, AirableText::Utf8);
    id.append(QLatin1Char('/'));
    mItype.appendTo(id, AirableText::Utf8);
    id.append(QLatin1Char('/'));
    mId.appendTo(id, AirableText::Utf8);
    return id;
}

QString ContainerWithId::attributes() const
{
    return QLatin1String("itype=\"") + itype() + QLatin1String("\" stype=\"") + stype()
        + QLatin1String("\" itemid=\"") + mId.toString(AirableText::Utf8) + QLatin1Char('"');
}

} // namespace airable
