// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// TCP and UDP sockets as the link needs them. Results are -1 for a failure, as the system's own
/// calls give them; nothing here throws and nothing raises a signal.
namespace platform {

/// Names one socket for the life of the process: a value is never given twice. A closed or made-up
/// one fails with -1, like a broken link.
using SocketHandle = std::uint64_t;

/// What OpenSocket gives when it fails.
constexpr SocketHandle InvalidSocket = ~SocketHandle{0};

/// In the order in which each system's sources name them.
enum class SocketOption
{
    ReuseAddress,
    OutOfBandInline,
    Broadcast
};

/// Makes the system's sockets ready for the process. `version` has the major number in the low
/// byte: 257 is 1.1. 0 on success.
int StartSockets(std::uint16_t version);

/// `type`: 1 stream, 2 datagram. A blocking IPv4 socket, or InvalidSocket.
SocketHandle OpenSocket(std::uint16_t type);

/// 0, or -1.
int EnableSocketOption(SocketHandle socket, SocketOption option);

/// The first IPv4 address of a host, in network byte order. A dotted address needs no name service;
/// a name blocks until the name service has answered. False when the host does not resolve.
bool ResolveHost(const char* host, std::uint32_t& address);

/// Blocks until the connection stands (0) or the system gives up (-1). `address` is in network byte
/// order, `port` in host byte order. Ending the thread from outside ends the wait.
int ConnectSocket(SocketHandle socket, std::uint32_t address, std::uint16_t port);

/// 0, or -1.
int MakeSocketNonBlocking(SocketHandle socket);

/// Bytes read, 0 once the peer has closed in an orderly way, -1 on a failure. On a non-blocking
/// socket an empty input is a failure. A connection that was reset gives -1 every time.
int ReceiveFromSocket(SocketHandle socket, char* buffer, int length);

/// Bytes taken over by the system, or -1.
int SendToSocket(SocketHandle socket, const char* buffer, int length);

/// The handle is stale from here on. A stale handle is left alone.
void CloseSocket(SocketHandle socket);

/// The calling thread's latest error number, in the system's own counting.
int LastSocketError();

} // namespace platform
