// SPDX-License-Identifier: MIT

#include "platform/Sockets.h"

#include "platform/SocketHandles.h"
#include "platform/linux/FreeBy.h"

#include <cerrno>
#include <memory>

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform {
namespace {

using FoundAddresses = std::unique_ptr<addrinfo, FreeBy<freeaddrinfo>>;

int NameOf(SocketOption option)
{
    constexpr int Names[] = {SO_REUSEADDR, SO_OOBINLINE, SO_BROADCAST};
    return Names[static_cast<int>(option)];
}

// -1, which the kernel refuses, for a handle that is not in use.
int DescriptorOf(SocketHandle socket)
{
    return static_cast<int>(SocketNumber(socket));
}

// A connect goes on by itself after a signal has interrupted it. Polling shows its end.
int AwaitInterruptedConnect(int descriptor)
{
    pollfd waiting{};
    waiting.fd = descriptor;
    waiting.events = POLLOUT;
    while (poll(&waiting, 1, -1) == -1 && errno == EINTR) {
    }
    int error = EBADF; // it stays when the socket is gone
    socklen_t size = sizeof error;
    getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size);
    errno = error;
    return error == 0 ? 0 : -1;
}

// After a reset recv reports the failure once, and from then on the end of the stream. The stream
// has really ended only when the peer has closed in an orderly way.
bool IsBroken(int descriptor)
{
    tcp_info info{};
    socklen_t size = sizeof info;
    return getsockopt(descriptor, IPPROTO_TCP, TCP_INFO, &info, &size) == 0 &&
           info.tcpi_state == TCP_CLOSE;
}

} // namespace

int StartSockets(std::uint16_t)
{
    return 0;
}

SocketHandle OpenSocket(std::uint16_t type)
{
    const int descriptor = ::socket(AF_INET, type | SOCK_CLOEXEC, 0);
    if (descriptor == -1) {
        return InvalidSocket;
    }
    const auto number = static_cast<std::uint32_t>(descriptor);
    if (number > LargestSocketNumber) {
        ::close(descriptor);
        errno = EMFILE;
        return InvalidSocket;
    }
    return MakeSocketHandle(number);
}

int EnableSocketOption(SocketHandle socket, SocketOption option)
{
    const int on = true; // one byte would not do
    return setsockopt(DescriptorOf(socket), SOL_SOCKET, NameOf(option), &on, sizeof on);
}

bool ResolveHost(const char* host, std::uint32_t& address)
{
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* first = nullptr;
    if (getaddrinfo(host, nullptr, &wanted, &first) != 0) {
        return false;
    }
    const FoundAddresses found(first);
    address = reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr.s_addr;
    return true;
}

int ConnectSocket(SocketHandle socket, std::uint32_t address, std::uint16_t port)
{
    const int descriptor = DescriptorOf(socket);
    sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_port = htons(port);
    peer.sin_addr.s_addr = address;
    const int result = ::connect(descriptor, reinterpret_cast<const sockaddr*>(&peer), sizeof peer);
    return result == -1 && errno == EINTR ? AwaitInterruptedConnect(descriptor) : result;
}

int MakeSocketNonBlocking(SocketHandle socket)
{
    int on = true;
    return ioctl(DescriptorOf(socket), FIONBIO, &on);
}

int ReceiveFromSocket(SocketHandle socket, char* buffer, int length)
{
    const int descriptor = DescriptorOf(socket);
    const auto received = ::recv(descriptor, buffer, static_cast<std::size_t>(length), 0);
    return received == 0 && IsBroken(descriptor) ? -1 : static_cast<int>(received);
}

int SendToSocket(SocketHandle socket, const char* buffer, int length)
{
    return static_cast<int>(
        ::send(DescriptorOf(socket), buffer, static_cast<std::size_t>(length), MSG_NOSIGNAL));
}

void CloseSocket(SocketHandle socket)
{
    const int descriptor = DescriptorOf(socket);
    if (RetireSocketHandle(socket)) {
        ::close(descriptor);
    }
}

int LastSocketError()
{
    return errno;
}

} // namespace platform
