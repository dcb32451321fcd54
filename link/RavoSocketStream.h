#pragma once

#include "platform/Sockets.h"

#include <QtGlobal>

/// The connected end of a RavoSocket, whose socket it uses and does not own. It may outlive the
/// socket: everything fails then with -1, as on a broken link.
///
/// The socket is non-blocking by the time this is used, so an empty input is a failure too.
class RavoSocketStream
{
public:
    explicit RavoSocketStream(platform::SocketHandle handle);

    /// Reads exactly `length` bytes. Gives that count, 0 if `length` is below 1, or -1 when the
    /// input ran out or failed; the bytes read before that stand in `buffer` and are lost to the
    /// stream. Once the unit has closed the connection in an orderly way this does not come back.
    int Receive(char* buffer, int length);

    /// Looks for bytes every 10 ms, sleeping before each look. Gives the number of bytes read
    /// within `timeoutMs`, never negative. A failure counts as a look that found nothing.
    int ReceiveWithTimeout(uchar* buffer, int length, int timeoutMs);

    /// 0 when all was written or `length` is below 1, else -1. Nothing is tried again.
    int Send(const char* buffer, int length);

private:
    platform::SocketHandle handle;
    [[maybe_unused]] qint32 state = 1;
};
