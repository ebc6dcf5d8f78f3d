#pragma once

#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariant>

// A translatable source text: the context it is looked up in, the text, and
// a plural count (-1 when the text has no plural forms).
struct TrCharData
{
    QString context;
    QString source;
    int count = -1;

    TrCharData() = default;
    TrCharData(QString ctx, QString src, int n = -1)
        : context(std::move(ctx)), source(std::move(src)), count(n) {}

    operator QVariant() const { return QVariant::fromValue(*this); }
    bool operator==(TrCharData const& o) const
    {
        return context == o.context && source == o.source && count == o.count;
    }
};

using TrArg = QVariant;

// A text shown to the user: either plain, or a translatable source with
// arguments that fill %1, %2, ... when it is turned into a string.
class TrString
{
public:
    TrString() = default;
    TrString(QString const& plain) : mData(QString(), plain) {}
    TrString(char const* plain) : mData(QString(), QString::fromUtf8(plain)) {}
    TrString(TrCharData const& data, QList<TrArg> const& args = {}) : mData(data), mArgs(args) {}

    QString toString() const;
    TrCharData const& data() const { return mData; }
    QList<TrArg> const& args() const { return mArgs; }
    bool isEmpty() const { return mData.source.isEmpty(); }

    operator QVariant() const { return QVariant::fromValue(*this); }
    bool operator==(TrString const& o) const { return mData == o.mData && mArgs == o.mArgs; }
    bool operator!=(TrString const& o) const { return !(*this == o); }

private:
    TrCharData mData;
    QList<TrArg> mArgs;
};

// The translation context of a function, from a signature text such as
// Q_FUNC_INFO gives: its qualified name and parameter list.
QString trExtractContext(char const* signature);

Q_DECLARE_METATYPE(TrCharData)
Q_DECLARE_METATYPE(TrString)
