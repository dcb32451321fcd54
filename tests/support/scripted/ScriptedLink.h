// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QStringList>

#include <functional>

/// Stands in for the system's sockets and its clock: linked into a test it takes the place of the
/// real ones. Time passes by Sleep only, bytes arrive when their time has come, and everything that
/// the program does is kept as a list of events in the order of doing.
///
/// Events: "start VERSION", "open TYPE", "option NAME", "resolve HOST", "connect PORT",
/// "nonblocking", "close", "sleep MS", "send HEX". Reads are not kept: their results show in what
/// follows.
namespace scripted {

/// SucceedsWhenTold waits for a later SetConnectResult.
enum class ConnectResult
{
    Succeeds,
    Fails,
    Hangs,
    SucceedsWhenTold
};

/// Everything as at the start of the process: the clock at 0, no bytes, connects succeed at once.
void Reset();

QStringList Events();
/// The events without the sleeps.
QStringList Actions();
/// The lengths of the sleeps, in order.
QList<int> Sleeps();
void ForgetEvents();
/// Milliseconds slept since the reset.
int Now();

/// Bytes that can be received from now on.
void Deliver(const QByteArray& bytes);
/// Bytes that can be received once the clock has come to `ms` after this call.
void DeliverAfter(int ms, const QByteArray& bytes);
/// Called for each frame sent; it may deliver.
void WhenSent(const std::function<void(const QByteArray& frame)>& answer);
/// Called after each sleep, with the time.
void WhenSlept(const std::function<void(int now)>& action);

/// From now on the unit has closed the connection: what is left is read, then the end of the
/// stream.
void CloseByPeer(int endsOfStream);
/// The call of that number from now, counted from 1, and all behind it fail.
void FailSendsFrom(int call);
/// At most so many bytes are taken by one call.
void TakeAtMost(int bytes);

void SetConnectResult(ConnectResult result);
/// Called in the connecting thread when the connection stands, before the socket stops blocking.
void WhenConnected(const std::function<void()>& action);
void FailStart();
void FailOpen();
void FailOptions();
void FailResolution();

} // namespace scripted
