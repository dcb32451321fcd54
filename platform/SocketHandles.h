// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Sockets.h"

/// For the sources of each system. The system gives the number of a closed socket out again. A
/// handle made here is never given twice. Any thread may call these functions at any time. No lock
/// is held.
namespace platform {

/// No handle can be made for a socket whose number is above this.
constexpr std::uint32_t LargestSocketNumber = 65535;

/// A new handle for a socket that the system has just opened.
SocketHandle MakeSocketHandle(std::uint32_t number);

/// The system's number for a handle that is in use. For any other -1, which every call of a system
/// refuses.
std::intptr_t SocketNumber(SocketHandle socket);

/// Makes the handle stale. True for one caller only, who then closes the socket.
bool RetireSocketHandle(SocketHandle socket);

} // namespace platform
