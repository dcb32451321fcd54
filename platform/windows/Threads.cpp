// SPDX-License-Identifier: MIT

#include "platform/Threads.h"

#include <memory>

#include <windows.h>

#undef CreateMutex // or the function below would get another name

namespace platform {
namespace {

struct ThreadStart
{
    ThreadEntry entry;
    void* parameter;
};

DWORD WINAPI RunThread(void* parameter)
{
    const std::unique_ptr<ThreadStart> start(static_cast<ThreadStart*>(parameter));
    return static_cast<DWORD>(start->entry(start->parameter));
}

} // namespace

// The thread is known by its number: an open handle would outlive it.
SystemHandle StartThread(ThreadEntry entry, void* parameter)
{
    auto* const start = new ThreadStart{entry, parameter}; // the thread frees it
    DWORD number = 0;
    const HANDLE thread = CreateThread(nullptr, 0, RunThread, start, 0, &number);
    if (thread == nullptr) {
        delete start;
        return InvalidHandle;
    }
    CloseHandle(thread);
    return static_cast<SystemHandle>(number);
}

SystemHandle CreateMutex()
{
    return reinterpret_cast<SystemHandle>(CreateMutexA(nullptr, FALSE, nullptr));
}

void CloseMutex(SystemHandle mutex)
{
    if (mutex != InvalidHandle) {
        CloseHandle(reinterpret_cast<HANDLE>(mutex));
    }
}

} // namespace platform
