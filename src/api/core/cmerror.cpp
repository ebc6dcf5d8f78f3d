#include "cmerror.h"
#include "tarnword.h"

TARN_WORD(CMError::Name, "name")
TARN_WORD(CMError::Title, "title")
TARN_WORD(CMError::Message, "message")
TARN_WORD(CMError::ActionReply, "actionReply")
TARN_WORD(CMError::Detail, "detail")
TARN_WORD(CMError::DefaultName, "error")
TARN_WORD(CMError::DefaultTitle, "Error")
TARN_WORD(CMError::InvalidArgumentName, "invalidArgument")

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
