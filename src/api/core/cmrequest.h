#pragma once

#include "cmpath.h"
#include "cmreply.h"
#include "tarnrowsroles.h"

#include <QSharedPointer>
#include <QStringList>
#include <QVariant>

// A client's request: a path and the reply that carries the answer. The
// record is shared and immutable, so copies cross threads freely; the kinds
// below add their fields, and a base request is cast back by its record.
class CMRequest
{
public:
    struct Data
    {
        Data(CMPath p, CMVoidReply r) : path(std::move(p)), reply(std::move(r)) {}
        virtual ~Data() = default;
        virtual CMVoidReply voidReply() const { return reply; }

        CMPath path;
        CMVoidReply reply;
    };

    CMRequest() = default;
    explicit CMRequest(QSharedPointer<Data const> data) : d(std::move(data)) {}

    bool isNull() const { return d.isNull(); }
    CMPath const& path() const { return d->path; }
    CMVoidReply reply() const { return d->voidReply(); }
    QSharedPointer<Data const> const& data() const { return d; }

    template <typename Kind>
    bool is() const { return dynamic_cast<typename Kind::Data const*>(d.data()) != nullptr; }

protected:
    QSharedPointer<Data const> d;
};

class CMGetRowsRequest : public CMRequest
{
public:
    struct Data : CMRequest::Data
    {
        Data(CMPath p, CMReply<TarnRowsRoles> r, int from, int to, int third, QStringList rl)
            : CMRequest::Data(std::move(p), r), fromRow(from), toRow(to), flags(third), roles(std::move(rl))
        {
        }
        int fromRow;
        int toRow; // inclusive
        int flags;
        QStringList roles;
    };

    CMGetRowsRequest() = default;
    CMGetRowsRequest(CMPath const& path, int fromRow, int toRow, int flags, QStringList const& roles,
                     CMReply<TarnRowsRoles> const& reply = CMReply<TarnRowsRoles>());
    // The rows request a base request holds; null when it holds another kind.
    explicit CMGetRowsRequest(CMRequest const& base);

    int fromRow() const { return data()->fromRow; }
    int toRow() const { return data()->toRow; }
    int flags() const { return data()->flags; }
    QStringList const& roles() const { return data()->roles; }
    CMReply<TarnRowsRoles> reply() const { return CMReply<TarnRowsRoles>(CMRequest::reply()); }

private:
    Data const* data() const { return static_cast<Data const*>(d.data()); }
};

class CMGetDataRequest : public CMRequest
{
public:
    struct Data : CMRequest::Data
    {
        Data(CMPath p, CMReply<QList<QVariant>> r, QStringList rl)
            : CMRequest::Data(std::move(p), r), roles(std::move(rl))
        {
        }
        QStringList roles;
    };

    CMGetDataRequest() = default;
    CMGetDataRequest(CMPath const& path, QStringList const& roles,
                     CMReply<QList<QVariant>> const& reply = CMReply<QList<QVariant>>());
    explicit CMGetDataRequest(CMRequest const& base);

    QStringList const& roles() const { return data()->roles; }
    CMReply<QList<QVariant>> reply() const { return CMReply<QList<QVariant>>(CMRequest::reply()); }

private:
    Data const* data() const { return static_cast<Data const*>(d.data()); }
};

class CMSetDataRequest : public CMRequest
{
public:
    struct Data : CMRequest::Data
    {
        Data(CMPath p, CMReply<QVariant> r, QString rl, QVariant v)
            : CMRequest::Data(std::move(p), r), role(std::move(rl)), value(std::move(v))
        {
        }
        QString role;
        QVariant value;
    };

    CMSetDataRequest() = default;
    CMSetDataRequest(CMPath const& path, QString const& role, QVariant const& value,
                     CMReply<QVariant> const& reply = CMReply<QVariant>());
    explicit CMSetDataRequest(CMRequest const& base);

    QString const& role() const { return data()->role; }
    QVariant const& value() const { return data()->value; }
    CMReply<QVariant> reply() const { return CMReply<QVariant>(CMRequest::reply()); }

private:
    Data const* data() const { return static_cast<Data const*>(d.data()); }
};

// Registers the request and reply types with Qt's meta-type system under the
// names that queued slot calls use. Called once by the framework at load.
void cmRegisterMetaTypes();

Q_DECLARE_METATYPE(CMRequest)
Q_DECLARE_METATYPE(CMGetRowsRequest)
Q_DECLARE_METATYPE(CMGetDataRequest)
Q_DECLARE_METATYPE(CMSetDataRequest)
Q_DECLARE_METATYPE(CMReply<TarnRowsRoles>)
Q_DECLARE_METATYPE(CMReply<QVariant>)
Q_DECLARE_METATYPE(CMReply<QList<QVariant>>)
