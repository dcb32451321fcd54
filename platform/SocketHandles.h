#pragma once

#include "platform/Sockets.h"

/// For the sources of each system: handles that are never given twice, made of the system's own
/// numbers, which are. Any thread may call these at any time; no lock is held.
namespace platform {

/// A system's number of an open socket is at most this, or no handle can be made for it.
constexpr std::uint32_t LargestSocketNumber = 65535;

/// A new handle for a socket that the system has just opened.
SocketHandle MakeSocketHandle(std::uint32_t number);

/// The system's number, or -1, which every call of a system refuses, for a handle not in use.
std::intptr_t SocketNumber(SocketHandle socket);

/// Makes the handle stale. True for the one caller that is then to close the socket.
bool RetireSocketHandle(SocketHandle socket);

} // namespace platform
