// SPDX-License-Identifier: MIT

#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

// What the calls of this system's sockets do not have in common with the other's.
using SystemSocket = int;
using SocketNameLength = socklen_t;

inline void CloseSystemSocket(SystemSocket socket)
{
    ::close(socket);
}
