#pragma once

namespace cloudsim {

// Shuts the server's socket of one connection, found by its two ports, so
// that the client sees the connection end without a byte of an answer. The
// HTTP library does not hand its sockets to request handlers.
bool closeConnection(int localPort, int remotePort);

} // namespace cloudsim
