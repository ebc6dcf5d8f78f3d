#include "cmerror.h"

#define CM_ERROR_WORD(name, text)                     \
    QString const& CMError::name()                    \
    {                                                 \
        static QString const s(QStringLiteral(text)); \
        return s;                                     \
    }

CM_ERROR_WORD(Name, "name")
CM_ERROR_WORD(Title, "title")
CM_ERROR_WORD(Message, "message")
CM_ERROR_WORD(ActionReply, "actionReply")
CM_ERROR_WORD(Detail, "detail")
CM_ERROR_WORD(DefaultName, "error")
CM_ERROR_WORD(DefaultTitle, "Error")
CM_ERROR_WORD(InvalidArgumentName, "invalidArgument")

CMError::CMError(QString const& name, TrString const& message)
{
    insert(Name(), name);
    insert(Message(), QVariant(message));
    insert(Title(), DefaultTitle());
}

TrString CMError::message() const
{
    QVariant const v = value(Message());
    if (v.userType() == qMetaTypeId<TrString>())
        return v.value<TrString>();
    return TrString(v.toString());
}

CMError CMError::invalidArgument(QString const& text, QString const& detail)
{
    CMError e(InvalidArgumentName(), TrString(text));
    e.insert(Detail(), detail);
    return e;
}
