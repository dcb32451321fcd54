// SPDX-License-Identifier: MIT

#include "tests/platform/contract/Peer.h"

#include "simulator/platform/ConnectionReset.h"

#include "SystemSockets.h"

namespace {

// Of the system's two ways to say that there is no socket, one is negative and one all ones.
constexpr std::uintptr_t NoSocket = ~std::uintptr_t{0};

SystemSocket System(std::uintptr_t socket)
{
    return static_cast<SystemSocket>(socket);
}

sockaddr_in LoopbackAddress()
{
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return name;
}

void CloseIfOpen(std::uintptr_t& socket)
{
    if (socket != NoSocket) {
        CloseSystemSocket(System(socket));
        socket = NoSocket;
    }
}

} // namespace

Peer::Peer()
    : listener(static_cast<std::uintptr_t>(::socket(AF_INET, SOCK_STREAM, 0)))
    , connection(NoSocket)
{
    const sockaddr_in name = LoopbackAddress();
    if (::bind(System(listener), reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0 ||
        ::listen(System(listener), 1) != 0) {
        CloseIfOpen(listener);
    }
}

Peer::~Peer()
{
    CloseIfOpen(connection);
    CloseIfOpen(listener);
}

std::uint16_t Peer::Port() const
{
    sockaddr_in name{};
    SocketNameLength length = sizeof name;
    ::getsockname(System(listener), reinterpret_cast<sockaddr*>(&name), &length);
    return ntohs(name.sin_port);
}

bool Peer::Accept()
{
    connection = static_cast<std::uintptr_t>(::accept(System(listener), nullptr, nullptr));
    return connection != NoSocket;
}

bool Peer::Send(const std::string& bytes)
{
    const int length = static_cast<int>(bytes.size());
    return ::send(System(connection), bytes.data(), length, 0) == length;
}

bool Peer::SendUrgently(char byte)
{
    return ::send(System(connection), &byte, 1, MSG_OOB) == 1;
}

std::string Peer::Receive(std::size_t length)
{
    std::string bytes;
    while (bytes.size() < length) {
        char byte = 0;
        if (::recv(System(connection), &byte, 1, 0) != 1) {
            break;
        }
        bytes += byte;
    }
    return bytes;
}

void Peer::CloseInOrder()
{
    CloseIfOpen(connection);
}

void Peer::Reset()
{
    simulator::platform::ResetOnClose(static_cast<std::intptr_t>(connection));
    CloseIfOpen(connection);
}
