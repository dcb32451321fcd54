// SPDX-License-Identifier: MIT

#pragma once

/// Stands in for platform/Threads.h with threads as real as the system's own, which a test can wait
/// for.
namespace JoinedThreads {

/// Waits for the end of every thread that was started.
void JoinAll();

} // namespace JoinedThreads
