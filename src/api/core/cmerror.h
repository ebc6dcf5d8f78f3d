#pragma once

#include "tarnhash.h"
#include "trstring.h"

// An error answered on a reply: a name that says what kind of failure it is,
// a translatable message and a title. Extra keys may carry details.
class CMError : public TarnHash
{
public:
    using TarnHash::TarnHash;
    CMError() = default;
    CMError(QString const& name, TrString const& message);

    static QString const& Name();
    static QString const& Title();
    static QString const& Message();
    static QString const& ActionReply();
    static QString const& Detail();
    static QString const& DefaultName();
    static QString const& DefaultTitle();
    static QString const& InvalidArgumentName();

    // An invalid-argument error: the text as message, the offending input as detail.
    static CMError invalidArgument(QString const& text, QString const& detail);

    QString name() const { return value(Name()).toString(); }
    TrString message() const;
    QString messageText() const { return message().toString(); }
    QString detail() const { return value(Detail()).toString(); }
};

Q_DECLARE_METATYPE(CMError)
