#pragma once

// What the targets that reach into the module share: an application object,
// the platform values a device sets, and one worker that lives on the
// fuzzer's own thread, so that its slots run at once when called.
#include "AirableObjectFactory.h"
#include "JsonParser.h"
#include "cb_airable.h"
#include "cmroot.h"
#include "platformvalues.h"

#include <QCoreApplication>

#include <log4cplus/logger.h>

#include <cstddef>
#include <cstdint>

namespace fuzzsupport {

inline QByteArray bytes(std::uint8_t const* data, std::size_t size)
{
    return QByteArray(reinterpret_cast<char const*>(data), static_cast<int>(size));
}

// The factory's object for the bytes, as AirableConnect makes it of an answer.
inline airable::AirableObject::Ptr parse(QByteArray const& data)
{
    portable::utils::JsonParser parser;
    parser.parse(data);
    return airable::AirableObjectFactory::instance()->parseJson(parser.root()->firstChild());
}

// Nothing listens on the discard port: a request the module sends fails
// later, in an event loop the targets never run.
inline CMAirableWorker* worker()
{
    static CMAirableWorker* const instance = [] {
        static int argc = 1;
        static char name[] = "fuzz";
        static char* argv[] = {name, nullptr};
        new QCoreApplication(argc, argv);
        log4cplus::Logger::getRoot().setLogLevel(log4cplus::OFF_LOG_LEVEL);
        log4cplus::Logger::getInstance("CB_Airable").setLogLevel(log4cplus::OFF_LOG_LEVEL);
        PlatformValues values;
        values.baseUrl = QStringLiteral("http://127.0.0.1:9");
        values.secret = QStringLiteral("fuzz-secret");
        values.oauthRedirectUri = QStringLiteral("app://return");
        values.apply();
        auto* w = new CMAirableWorker({});
        CMRootWorker::instance()->addWorker(w);
        QCoreApplication::sendPostedEvents();
        return w;
    }();
    return instance;
}

// Nodes of dialogs go with deleteLater; without this they would pile up.
inline void settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::sendPostedEvents();
}

} // namespace fuzzsupport
