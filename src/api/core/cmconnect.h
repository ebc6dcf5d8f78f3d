#pragma once

#include <QObject>

// The platform's connect: across threads every parameter type of the signal
// must be a pointer or a registered meta-type, or the queued call could not
// carry it; and the connection must succeed. Either failure stops the
// process, because a silently missing connection loses requests.
QMetaObject::Connection CMConnect(QObject const* sender, char const* signal, QObject const* receiver,
                                  char const* method, Qt::ConnectionType type = Qt::AutoConnection);

// True when every parameter of the signal can cross threads.
bool verifyConnectionSignalParameters(QObject const* sender, char const* signal, QObject const* receiver,
                                      Qt::ConnectionType type);
