// SPDX-License-Identifier: MIT

#include "link/RavoSocket.h"

#include "platform/Sleep.h"

namespace {

constexpr ushort StreamSocket = 1;
constexpr ushort DatagramSocket = 2;
constexpr ushort SocketsVersion = 257; // 1.1
constexpr ushort ConnectFailed = 65535;

} // namespace

quint8 RavoSocket::winsockStarted = 0;
quint16 RavoSocket::instanceCount = 0;

RavoSocket::RavoSocket(ushort type)
{
    if (type != StreamSocket && type != DatagramSocket) {
        throw InvalidSocketType;
    }
    if (winsockStarted == 0) {
        if (platform::StartSockets(SocketsVersion) != 0) {
            throw SocketSetupFailed;
        }
        winsockStarted = 1;
    }
    ++instanceCount;
    this->type = type;
    CreateSocket();
}

RavoSocket::~RavoSocket()
{
    if (winsockStarted == 1) {
        --instanceCount;
    }
}

void RavoSocket::CreateSocket()
{
    handle = platform::OpenSocket(type);
    if (handle == platform::InvalidSocket) {
        throw SocketSetupFailed;
    }
    EnableOption(platform::SocketOption::ReuseAddress);
    EnableOption(type == StreamSocket ? platform::SocketOption::OutOfBandInline
                                      : platform::SocketOption::Broadcast);
}

void RavoSocket::EnableOption(platform::SocketOption option)
{
    if (platform::EnableSocketOption(handle, option) == -1) {
        throw SocketSetupFailed;
    }
}

ushort RavoSocket::Connect(const char* host, ushort port)
{
    quint32 address = 0;
    if (!platform::ResolveHost(host, address)) {
        return ConnectFailed;
    }
    if (platform::ConnectSocket(handle, address, port) == 0) {
        return 0;
    }
    if (platform::LastSocketError() != 0) {
        platform::Sleep(1);
    }
    return ConnectFailed;
}
