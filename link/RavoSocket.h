// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Sockets.h"

#include <QtGlobal>

/// A socket that is made and connected, once. It does not close its socket: the owner does that
/// with platform::CloseSocket before deleting the object.
class RavoSocket
{
public:
    /// Thrown by value, by the constructor only.
    enum RavoSocketException : qint32
    {
        InvalidSocketType = 0,
        SocketSetupFailed = 1,
    };

    /// `type`: 1 stream, 2 datagram. The socket is blocking. Throws RavoSocketException; a socket
    /// whose options could not be set stays open then.
    explicit RavoSocket(ushort type);
    ~RavoSocket();
    Q_DISABLE_COPY(RavoSocket)

    /// Blocks until the connection stands or the system gives up. `host` is resolved first, `port`
    /// is in host byte order. 0 on success, 65535 on any failure.
    ushort Connect(const char* host, ushort port);

    platform::SocketHandle Handle() const { return handle; }

private:
    void CreateSocket();
    void EnableOption(platform::SocketOption option);

    platform::SocketHandle handle = 0;
    ushort type = 0;

    static quint8 winsockStarted;
    static quint16 instanceCount;
};
