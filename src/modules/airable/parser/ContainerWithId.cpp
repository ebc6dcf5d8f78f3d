#include "ContainerWithId.h"

namespace airable {

ContainerWithId::ContainerWithId(QString const& stype, QString const& itype, QString const& id)
    : mStype(stype, AirableText::Utf8)
    , mItype(itype, AirableText::Utf8)
    , mId(id, AirableText::Utf8)
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

// Every row asks for ids, so the text is put together in one decode.
QString ContainerWithId::combinedId() const
{
    QString const serviceType = stype();
    QString const itemType = itype();
    QLatin1String const scheme("airable://");
    QString const id = mId.toString(AirableText::Utf8);
    QString text;
    text.reserve(scheme.size() + serviceType.size() + itemType.size() + id.size() + 2);
    text.append(scheme).append(serviceType).append(QLatin1Char('/')).append(itemType).append(QLatin1Char('/')).append(id);
    return text;
}

QString ContainerWithId::attributes() const
{
    return QLatin1String("itype=\"") + itype() + QLatin1String("\" stype=\"") + stype()
        + QLatin1String("\" itemid=\"") + mId.toString(AirableText::Utf8) + QLatin1Char('"');
}

} // namespace airable
