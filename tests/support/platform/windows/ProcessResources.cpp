// SPDX-License-Identifier: MIT

#include "tests/support/platform/ProcessResources.h"

#include <windows.h>
// Needs the one above before it.
#include <tlhelp32.h>

int OpenHandles()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<int>(count);
}

int RunningThreads()
{
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread{};
    thread.dwSize = sizeof thread;
    int count = 0;
    for (BOOL found = Thread32First(all, &thread); found != FALSE;
         found = Thread32Next(all, &thread)) {
        count += thread.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(all);
    return count;
}
