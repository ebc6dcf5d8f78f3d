#include "connectioncloser.h"

#include <QDir>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace cloudsim {

namespace {

int portOf(sockaddr_storage const& address)
{
    if (address.ss_family == AF_INET)
        return ntohs(reinterpret_cast<sockaddr_in const&>(address).sin_port);
    if (address.ss_family == AF_INET6)
        return ntohs(reinterpret_cast<sockaddr_in6 const&>(address).sin6_port);
    return -1;
}

} // namespace

bool closeConnection(int localPort, int remotePort)
{
    return closeConnections(localPort, remotePort) > 0;
}

int closeConnections(int localPort, int remotePort)
{
    int closed = 0;
    for (QString const& entry : QDir("/proc/self/fd").entryList(QDir::Files | QDir::System)) {
        int const fd = entry.toInt();
        sockaddr_storage local{};
        sockaddr_storage peer{};
        socklen_t localSize = sizeof local;
        socklen_t peerSize = sizeof peer;
        if (getsockname(fd, reinterpret_cast<sockaddr*>(&local), &localSize) != 0
            || getpeername(fd, reinterpret_cast<sockaddr*>(&peer), &peerSize) != 0)
            continue;
        if (portOf(local) == localPort && (remotePort < 0 || portOf(peer) == remotePort)) {
            ::shutdown(fd, SHUT_RDWR);
            ++closed;
        }
    }
    return closed;
}

} // namespace cloudsim
