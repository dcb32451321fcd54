// SPDX-License-Identifier: MIT

#include "platform/Sockets.h"

#include "platform/SocketHandles.h"

#include <cstring>

#include <winsock2.h>

namespace platform {
namespace {

int NameOf(SocketOption option)
{
    constexpr int Names[] = {SO_REUSEADDR, SO_OOBINLINE, SO_BROADCAST};
    return Names[static_cast<int>(option)];
}

// INVALID_SOCKET, which the system refuses, for a handle that is not in use.
SOCKET SystemSocket(SocketHandle socket)
{
    return static_cast<SOCKET>(SocketNumber(socket));
}

// recv reports the end of the stream after a reset, too. Then nothing can be sent any more. After
// an orderly close by the peer sending still works. Nothing goes over the wire for this.
bool IsBroken(SOCKET socket)
{
    return ::send(socket, "", 0, 0) == SOCKET_ERROR;
}

} // namespace

int StartSockets(std::uint16_t version)
{
    WSADATA details{};
    return WSAStartup(version, &details);
}

SocketHandle OpenSocket(std::uint16_t type)
{
    const SOCKET socket = ::socket(AF_INET, type, 0);
    if (socket == INVALID_SOCKET) {
        return InvalidSocket;
    }
    if (socket > LargestSocketNumber) {
        closesocket(socket);
        WSASetLastError(WSAEMFILE);
        return InvalidSocket;
    }
    return MakeSocketHandle(static_cast<std::uint32_t>(socket));
}

int EnableSocketOption(SocketHandle socket, SocketOption option)
{
    const char on = 1;
    return setsockopt(SystemSocket(socket), SOL_SOCKET, NameOf(option), &on, sizeof on);
}

bool ResolveHost(const char* host, std::uint32_t& address)
{
    // For an empty name the system would give an address of this computer.
    const hostent* found = *host == '\0' ? nullptr : gethostbyname(host);
    if (found == nullptr) {
        return false;
    }
    std::memcpy(&address, found->h_addr_list[0], sizeof address);
    return true;
}

int ConnectSocket(SocketHandle socket, std::uint32_t address, std::uint16_t port)
{
    sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_port = htons(port);
    peer.sin_addr.s_addr = address;
    return ::connect(SystemSocket(socket), reinterpret_cast<const sockaddr*>(&peer), sizeof peer);
}

int MakeSocketNonBlocking(SocketHandle socket)
{
    u_long on = 1;
    return ioctlsocket(SystemSocket(socket), static_cast<long>(FIONBIO), &on);
}

int ReceiveFromSocket(SocketHandle socket, char* buffer, int length)
{
    const SOCKET number = SystemSocket(socket);
    const int received = ::recv(number, buffer, length, 0);
    return received == 0 && IsBroken(number) ? -1 : received;
}

int SendToSocket(SocketHandle socket, const char* buffer, int length)
{
    return ::send(SystemSocket(socket), buffer, length, 0);
}

void CloseSocket(SocketHandle socket)
{
    const SOCKET number = SystemSocket(socket);
    if (RetireSocketHandle(socket)) {
        closesocket(number);
    }
}

int LastSocketError()
{
    return WSAGetLastError();
}

} // namespace platform
