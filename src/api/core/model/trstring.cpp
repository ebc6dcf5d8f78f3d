#include "trstring.h"

#include <QCoreApplication>

QString TrString::toString() const
{
    QString text = mData.context.isEmpty()
        ? mData.source
        : QCoreApplication::translate(mData.context.toUtf8().constData(),
                                      mData.source.toUtf8().constData(), nullptr, mData.count);
    for (auto const& arg : mArgs)
        text = text.arg(arg.canConvert<TrString>() ? arg.value<TrString>().toString() : arg.toString());
    return text;
}

QString trExtractContext(char const* signature)
{
    QString text = QString::fromLatin1(signature);
    int const paren = text.indexOf(QLatin1Char('('));
    if (paren >= 0)
        text.truncate(paren);
    // What precedes the qualified name is the return type and specifiers.
    int const space = text.lastIndexOf(QLatin1Char(' '));
    if (space >= 0)
        text = text.mid(space + 1);
    while (text.startsWith(QLatin1Char('*')) || text.startsWith(QLatin1Char('&')))
        text.remove(0, 1);
    return text;
}
