// SPDX-License-Identifier: MIT

#include "tests/support/scripted/JoinedThreads.h"

#include "platform/Threads.h"

#include <thread>
#include <vector>

namespace {

std::vector<std::thread> threads;

} // namespace

void JoinedThreads::JoinAll()
{
    for (std::thread& thread : threads) {
        thread.join();
    }
    threads.clear();
}

platform::SystemHandle platform::StartThread(ThreadEntry entry, void* parameter)
{
    threads.emplace_back(entry, parameter);
    return static_cast<SystemHandle>(threads.size());
}

platform::SystemHandle platform::CreateMutex()
{
    return 1;
}

void platform::CloseMutex(SystemHandle) {}
