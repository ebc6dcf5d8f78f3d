#include "cmconnect.h"

#include <QMetaMethod>
#include <QThread>
#include <cstdio>
#include <cstdlib>

namespace {
void fatal(char const* text)
{
    std::fprintf(stderr, "Assertion failed: %s\n", text);
    std::abort();
}
} // namespace

bool verifyConnectionSignalParameters(QObject const* sender, char const* signal, QObject const* receiver,
                                      Qt::ConnectionType type)
{
    if (type == Qt::DirectConnection || sender->thread() == receiver->thread())
        return true;
    // SIGNAL() texts carry a leading code digit.
    QByteArray const normalized = QMetaObject::normalizedSignature(signal + 1);
    int const index = sender->metaObject()->indexOfSignal(normalized.constData());
    if (index < 0)
        return false;
    QMetaMethod const method = sender->metaObject()->method(index);
    for (QByteArray const& name : method.parameterTypes())
        if (!name.endsWith('*') && QMetaType::type(name.constData()) == 0)
            return false;
    return true;
}

QMetaObject::Connection CMConnect(QObject const* sender, char const* signal, QObject const* receiver,
                                  char const* method, Qt::ConnectionType type)
{
    if (!verifyConnectionSignalParameters(sender, signal, receiver, type))
        fatal("verifyConnectionSignalParameters(sender, signal, receiver, type)");
    QMetaObject::Connection connection = QObject::connect(sender, signal, receiver, method, type);
    if (!connection)
        fatal("connection");
    return connection;
}
