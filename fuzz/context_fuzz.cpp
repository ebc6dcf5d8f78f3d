// Any bytes as the context blob a row's context path carries: the menu is
// built from whatever they hold, and a blob written from what was read
// reads back the same.
#include "module_support.h"

#include "tarnconstants.h"
#include "tarnrowsroles.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    CMAirableWorker* const worker = fuzzsupport::worker();
    QByteArray const blob = fuzzsupport::bytes(data, size);

    QList<CMAirableWorker::ContextAction> const actions = CMAirableWorker::readContextActions(blob);
    QList<CMAirableWorker::ContextAction> const again =
        CMAirableWorker::readContextActions(CMAirableWorker::writeContextActions(actions));
    if (again.size() != actions.size())
        std::abort();
    for (int i = 0; i < actions.size(); ++i) {
        if (again[i].title != actions[i].title || again[i].url != actions[i].url || again[i].id != actions[i].id
            || again[i].opensContext != actions[i].opensContext || again[i].active != actions[i].active)
            std::abort();
    }

    // The road a client takes: the blob in base64 inside the path.
    CMPath const path = worker->addPrefix(TarnAirablePrefixContext() + QLatin1Char(':') + QString::fromLatin1(blob.toBase64()));
    CMGetRowsRequest const request(path, 0, 49, 0,
                                   {TarnRoles::Title(), TarnRoles::Path(), TarnRoles::Type(), TarnRoles::Id(),
                                    TarnRoles::Preferred()});
    worker->on_getRowsRequest(request);
    if (!request.reply().isFinished())
        std::abort();
    fuzzsupport::settle();
    return 0;
}
