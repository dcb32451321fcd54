// SPDX-License-Identifier: MIT

#include "link/RavoSocketStream.h"

#include "platform/Sleep.h"

RavoSocketStream::RavoSocketStream(platform::SocketHandle handle)
    : handle(handle)
{
}

int RavoSocketStream::Receive(char* buffer, int length)
{
    int count = 0;
    while (count < length) {
        const int received = platform::ReceiveFromSocket(handle, buffer + count, length - count);
        if (received == -1) {
            return -1;
        }
        count += received;
    }
    return count;
}

int RavoSocketStream::ReceiveWithTimeout(uchar* buffer, int length, int timeoutMs)
{
    int count = 0;
    for (int elapsed = 0; elapsed < timeoutMs && count < length; elapsed += PollMs) {
        platform::Sleep(PollMs);
        const int received = platform::ReceiveFromSocket(
            handle, reinterpret_cast<char*>(buffer) + count, length - count);
        if (received != -1) {
            count += received;
        }
    }
    return count;
}

int RavoSocketStream::Send(const char* buffer, int length)
{
    int count = 0;
    while (count < length) {
        const int sent = platform::SendToSocket(handle, buffer + count, length - count);
        if (sent == -1) {
            return -1;
        }
        count += sent;
    }
    return 0;
}
