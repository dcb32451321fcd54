// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace platform {

/// The handle of a thread or a mutex, in the system's own counting.
using SystemHandle = std::intptr_t;

constexpr SystemHandle InvalidHandle = -1;

using ThreadEntry = int (*)(void* parameter);

/// Starts a thread with the system's default stack. The thread owns itself: nobody waits for it,
/// and it leaves nothing behind when `entry` returns. InvalidHandle when none could be started.
SystemHandle StartThread(ThreadEntry entry, void* parameter);

/// A mutex that nobody holds yet, without a name.
SystemHandle CreateMutex();

/// Frees what CreateMutex gave. InvalidHandle is left alone.
void CloseMutex(SystemHandle mutex);

} // namespace platform
