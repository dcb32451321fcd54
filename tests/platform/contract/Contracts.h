// SPDX-License-Identifier: MIT

#pragma once

/// What the headers of platform/ promise, in calls of results::Expect, one function for a header.
namespace contract {

void CheckSocketHandles();
void CheckSockets();
void CheckSleep();
void CheckThreads();

/// Reads the table, whatever is in it, and changes nothing.
void CheckNeighbourTable();

/// These are to be called without privileges in the network 192.168.77.0/24 and no other, in which
/// nobody knows names, 192.168.77.9 is known to be at 02:4c:7e:00:00:09 and 192.168.77.10 at
/// 02:4c:7e:00:00:0a.
void CheckUnknownNames();
void CheckBroadcast();
void CheckKnownNeighbours();

} // namespace contract
