// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Sockets.h"

#include <QtGlobal>

/// The connected end of a RavoSocket. It uses the socket and does not own it. It may outlive the
/// socket: everything then fails with -1, as on a broken link.
///
/// The socket is non-blocking by the time this is used, so an empty input is a failure too.
class RavoSocketStream
{
public:
    /// The time between two looks of ReceiveWithTimeout(). As its timeout it means one look.
    static constexpr int PollMs = 10;

    explicit RavoSocketStream(platform::SocketHandle handle);

    /// Reads exactly `length` bytes. Gives that count, or 0 if `length` is below 1. Gives -1 when
    /// the input ran out or failed: the bytes read before that stand in `buffer` and are lost to
    /// the stream. Does not come back once the unit has closed the connection in an orderly way.
    int Receive(char* buffer, int length);

    /// Looks for bytes every PollMs, sleeping before each look. Gives the number of bytes read
    /// within `timeoutMs`, never negative. A failure counts as a look that found nothing.
    int ReceiveWithTimeout(uchar* buffer, int length, int timeoutMs);

    /// 0 when all was written or `length` is below 1, else -1. Nothing is tried again.
    int Send(const char* buffer, int length);

private:
    platform::SocketHandle handle;
    [[maybe_unused]] qint32 state = 1;
};
