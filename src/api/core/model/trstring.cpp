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
    // "virtual void Class::name(const Arg&) const" gives "Class::name(const Arg&)":
    // the qualified name with its parameters, so overloads have contexts of
    // their own. A lambda keeps what follows its enclosing function, as in
    // "Class::name(const Arg&)::<lambda(int)>", so it has a context of its own.
    QString const text = QString::fromLatin1(signature);
    int const paren = text.indexOf(QLatin1Char('('));
    QString head = paren >= 0 ? text.left(paren) : text;
    int const space = head.lastIndexOf(QLatin1Char(' '));
    if (space >= 0)
        head = head.mid(space + 1);
    while (head.startsWith(QLatin1Char('*')) || head.startsWith(QLatin1Char('&')))
        head.remove(0, 1);
    if (paren < 0)
        return head;

    int depth = 0;
    int close = -1;
    for (int i = paren; i < text.size() && close < 0; ++i) {
        if (text.at(i) == QLatin1Char('('))
            ++depth;
        else if (text.at(i) == QLatin1Char(')') && --depth == 0)
            close = i;
    }
    if (close < 0)
        return head;
    QString context = head + text.mid(paren, close - paren + 1);
    if (text.midRef(close + 1).startsWith(QLatin1String("::")))
        context += text.mid(close + 1);
    return context;
}
