#include "tarnclient.h"
#include "cmroot.h"

#include <QEventLoop>
#include <QTimer>

namespace TarnClient {

CMReply<TarnRowsRoles> rows(CMPath const& path, int fromRow, int toRow, QStringList const& roles)
{
    CMGetRowsRequest request(path, fromRow, toRow, -1, roles);
    CMRootWorker::instance()->request(request);
    return request.reply();
}

CMReply<QList<QVariant>> data(CMPath const& path, QStringList const& roles)
{
    CMGetDataRequest request(path, roles);
    CMRootWorker::instance()->request(request);
    return request.reply();
}

CMReply<QVariant> setData(CMPath const& path, QString const& role, QVariant const& value)
{
    CMSetDataRequest request(path, role, value);
    CMRootWorker::instance()->request(request);
    return request.reply();
}

bool wait(CMVoidReply const& reply, int ms)
{
    if (reply.isFinished())
        return true;
    QEventLoop loop;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    // Queued, so that a reply finished before exec() still ends the loop.
    reply.addWatcher(&loop, [&loop](CMVoidReply const&) { loop.quit(); }, Qt::QueuedConnection);
    timer.start(ms);
    loop.exec();
    return reply.isFinished();
}

}
