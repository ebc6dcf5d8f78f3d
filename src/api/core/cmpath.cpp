#include "cmpath.h"

#include <QUrlQuery>

namespace {
constexpr QChar kParamSeparator(0x1f);
}

CMPath CMPath::fromPrefixWithBase(QString const& text)
{
    int const colon = text.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return CMPath(QString(), text);
    return CMPath(text.left(colon + 1), text.mid(colon + 1));
}

CMPath CMPath::fromEncoded(QString const& encoded)
{
    int const sep = encoded.indexOf(kParamSeparator);
    CMPath path = fromPrefixWithBase(sep < 0 ? encoded : encoded.left(sep));
    if (sep >= 0) {
        QUrlQuery const query(encoded.mid(sep + 1));
        for (auto const& item : query.queryItems(QUrl::FullyDecoded))
            path.addParam(item.first, item.second);
    }
    return path;
}

QString CMPath::toEncoded() const
{
    QString text = baseWithPrefix();
    if (!mParams.isEmpty()) {
        QUrlQuery query;
        for (auto it = mParams.cbegin(); it != mParams.cend(); ++it)
            query.addQueryItem(QString::fromUtf8(QUrl::toPercentEncoding(it.key())),
                               QString::fromUtf8(QUrl::toPercentEncoding(it.value())));
        text += kParamSeparator + query.toString(QUrl::FullyEncoded);
    }
    return text;
}

QStringList CMPath::splitBase() const
{
    return mBase.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

bool CMPath::startsWith(CMPath const& p, QString* rest) const
{
    if (mPrefix != p.mPrefix || !mBase.startsWith(p.mBase))
        return false;
    if (rest)
        *rest = mBase.mid(p.mBase.size());
    return true;
}

CMPath CMPath::operator+(QString const& text) const
{
    CMPath p(*this);
    p.mBase += text;
    return p;
}

void CMPath::appendSubpath(QString const& subpath)
{
    if (!mBase.isEmpty() && !mBase.endsWith(QLatin1Char('/')))
        mBase += QLatin1Char('/');
    mBase += subpath;
}

uint qHash(CMPath const& path, uint seed)
{
    return qHash(path.base(), seed) ^ qHash(path.prefix(), seed) ^ uint(path.params().size());
}

std::ostream& operator<<(std::ostream& os, CMPath const& path)
{
    return os << path.toEncoded().toStdString();
}

QDebug operator<<(QDebug dbg, CMPath const& path)
{
    QDebugStateSaver saver(dbg);
    dbg.nospace() << "CMPath(" << path.toEncoded() << ')';
    return dbg;
}
