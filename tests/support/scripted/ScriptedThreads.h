// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Threads.h"

#include <QVector>

/// Stands in for platform/Threads.h: a started thread is only written down, until the test runs it.
namespace ScriptedThreads {

/// Forgets everything. Every thread that was started must have been run.
void Reset();

/// What StartThread() does from now on: refuse, or give these handles out one after the other.
void RefuseStarts();
void GiveHandles(QVector<platform::SystemHandle> handles);

/// What CreateMutex() gives from now on.
void GiveMutex(platform::SystemHandle handle);

/// The mutexes that CloseMutex() was called with.
const QVector<platform::SystemHandle>& ClosedMutexes();

/// The calls of StartThread(), refused ones too.
int Starts();

/// Threads that were started and not run yet.
int Waiting();

/// Runs the thread that has waited longest, in the calling thread, and gives its exit code.
int RunNext();

void RunAll();

} // namespace ScriptedThreads
