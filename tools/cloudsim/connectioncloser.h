#pragma once

namespace cloudsim {

// Shuts the server's socket of one connection, found by its two ports, so
// that the client sees the connection end without a byte of an answer. The
// HTTP library does not hand its sockets to request handlers.
bool closeConnection(int localPort, int remotePort);

// Shuts every connection of the local port with the given remote port, or
// with any when it is negative. Returns how many there were.
int closeConnections(int localPort, int remotePort = -1);

} // namespace cloudsim
