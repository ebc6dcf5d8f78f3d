// Any bytes as the cloud's answer to a playback report: the report's reply
// always ends, with nothing, a notification or an error, whatever the
// answer orders the device to do.
#include "module_support.h"

#include "cmglobal.h"
#include "tarnrowsroles.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    CMAirableWorker* const worker = fuzzsupport::worker();
    QByteArray const body = fuzzsupport::bytes(data, size);
    AirableConnect::Reply answer;
    answer.url = TarnUrl::fromEncoded(QByteArrayLiteral("http://127.0.0.1:9/airable/radios/events/start?stream=s"));
    answer.statusCode = 200;
    answer.object = fuzzsupport::parse(body);
    answer.data = body;
    CMGetRowsRequest const report(CMPath::fromPrefixWithBase(answer.url.toString()), 0, 1, 0, CMAllRoles());
    worker->on_eventResponse(answer, report, QVariant());
    if (!report.reply().isFinished())
        std::abort();
    fuzzsupport::settle();
    return 0;
}
