// Any text as the prePlay data a service packed into an item's metadata:
// the stream URLs come out, never more than the data can hold.
#include "module_support.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const raw = fuzzsupport::bytes(data, size);
    // As the player hands it (base64), and as anything else it might.
    for (QString const& packed : {QString::fromLatin1(raw.toBase64()), QString::fromLatin1(raw)}) {
        QStringList const urls = CMAirableWorker::unpackPrePlayData(packed);
        // Each URL took at least its four bytes of length.
        if (static_cast<std::size_t>(urls.size()) * 4 > static_cast<std::size_t>(packed.size()) + 4)
            std::abort();
    }
    return 0;
}
