// Any text as the parameters of a login's browser-flow path and as the
// address a client gives it: the login data or an error comes back at once.
#include "module_support.h"

#include "airableoauth.h"
#include "tarnconstants.h"
#include "tarnvalue.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    CMAirableWorker* const worker = fuzzsupport::worker();
    // A node of its own beside the worker's, asked directly.
    static AirableOAuth* const node = AirableOAuth::create(worker->nodes(), worker->addPrefix(QStringLiteral("oauth-fuzz")));
    QByteArray const raw = fuzzsupport::bytes(data, size);
    int const split = raw.indexOf('\n');
    QString const params = QString::fromUtf8(split < 0 ? raw : raw.left(split));
    QString const address = split < 0 ? QString() : QString::fromUtf8(raw.mid(split + 1));

    // Parameters ride behind the unit separator, as a URL query.
    CMPath const path = CMPath::fromEncoded(TarnAirableOAuthPath().toEncoded() + QChar(0x1f) + params);
    for (QString const& role : {TarnRoles::Activate(), TarnRoles::Value()}) {
        CMSetDataRequest const request(path, role, TarnValue().setString_(address).__variant());
        node->setDataRequest(request);
        if (!request.reply().isFinished())
            std::abort();
    }
    fuzzsupport::settle();
    return 0;
}
