#include "cmrequest.h"

#include "tarnactionreply.h"
#include "tarnedit.h"
#include "tarnmediadata.h"
#include "tarnurl.h"
#include "tarnvalue.h"

namespace {
template <typename Kind>
QSharedPointer<CMRequest::Data const> castBack(CMRequest const& base)
{
    return dynamic_cast<typename Kind::Data const*>(base.data().data()) ? base.data()
                                                                         : QSharedPointer<CMRequest::Data const>();
}
} // namespace

CMGetRowsRequest::CMGetRowsRequest(CMPath const& path, int fromRow, int toRow, int flags,
                                   QStringList const& roles, CMReply<TarnRowsRoles> const& reply)
    : CMRequest(QSharedPointer<Data const>::create(path, reply, fromRow, toRow, flags, roles))
{
}

CMGetRowsRequest::CMGetRowsRequest(CMRequest const& base) : CMRequest(castBack<CMGetRowsRequest>(base)) {}

CMGetDataRequest::CMGetDataRequest(CMPath const& path, QStringList const& roles,
                                   CMReply<QList<QVariant>> const& reply)
    : CMRequest(QSharedPointer<Data const>::create(path, reply, roles))
{
}

CMGetDataRequest::CMGetDataRequest(CMRequest const& base) : CMRequest(castBack<CMGetDataRequest>(base)) {}

CMSetDataRequest::CMSetDataRequest(CMPath const& path, QString const& role, QVariant const& value,
                                   CMReply<QVariant> const& reply)
    : CMRequest(QSharedPointer<Data const>::create(path, reply, role, value))
{
}

CMSetDataRequest::CMSetDataRequest(CMRequest const& base) : CMRequest(castBack<CMSetDataRequest>(base)) {}

void cmRegisterMetaTypes()
{
    static bool const done = [] {
        qRegisterMetaType<CMRequest>("CMRequest");
        qRegisterMetaType<CMGetRowsRequest>("CMGetRowsRequest");
        qRegisterMetaType<CMGetDataRequest>("CMGetDataRequest");
        qRegisterMetaType<CMSetDataRequest>("CMSetDataRequest");
        qRegisterMetaType<CMPath>("CMPath");
        qRegisterMetaType<CMVoidReply>("CMVoidReply");
        qRegisterMetaType<CMError>("CMError");
        qRegisterMetaType<CMReply<TarnRowsRoles>>("CMReply<TarnRowsRoles>");
        qRegisterMetaType<CMReply<QVariant>>("CMReply<QVariant>");
        qRegisterMetaType<CMReply<QList<QVariant>>>("CMReply<QList<QVariant>>");
        qRegisterMetaType<TarnHash>("TarnHash");
        qRegisterMetaType<TarnRoles>("TarnRoles");
        qRegisterMetaType<TarnRowsRoles>("TarnRowsRoles");
        qRegisterMetaType<TarnValue>("TarnValue");
        qRegisterMetaType<TarnUrl>("TarnUrl");
        qRegisterMetaType<TarnEdit>("TarnEdit");
        qRegisterMetaType<TarnEvent>("TarnEvent");
        qRegisterMetaType<TarnActionReply>("TarnActionReply");
        qRegisterMetaType<TarnMediaData>("TarnMediaData");
        qRegisterMetaType<TrString>("TrString");
        qRegisterMetaType<TrCharData>("TrCharData");
        return true;
    }();
    Q_UNUSED(done)
}
