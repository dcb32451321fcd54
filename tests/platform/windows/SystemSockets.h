// SPDX-License-Identifier: MIT

#pragma once

#include <winsock2.h>

// What the calls of this system's sockets do not have in common with the other's.
using SystemSocket = SOCKET;
using SocketNameLength = int;

inline void CloseSystemSocket(SystemSocket socket)
{
    ::closesocket(socket);
}
