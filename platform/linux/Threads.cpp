// SPDX-License-Identifier: MIT

#include "platform/Threads.h"

#include <memory>
#include <mutex>

#include <pthread.h>

namespace platform {
namespace {

struct ThreadStart
{
    ThreadEntry entry;
    void* parameter;
};

extern "C" void* RunThread(void* parameter)
{
    const std::unique_ptr<ThreadStart> start(static_cast<ThreadStart*>(parameter));
    const int result = start->entry(start->parameter);
    return reinterpret_cast<void*>(static_cast<std::intptr_t>(result));
}

} // namespace

SystemHandle StartThread(ThreadEntry entry, void* parameter)
{
    auto* const start = new ThreadStart{entry, parameter}; // the thread frees it
    pthread_t thread{};
    if (pthread_create(&thread, nullptr, RunThread, start) != 0) {
        delete start;
        return InvalidHandle;
    }
    pthread_detach(thread);
    return static_cast<SystemHandle>(thread);
}

SystemHandle CreateMutex()
{
    return reinterpret_cast<SystemHandle>(new std::mutex);
}

void CloseMutex(SystemHandle mutex)
{
    if (mutex != InvalidHandle) {
        delete reinterpret_cast<std::mutex*>(mutex);
    }
}

} // namespace platform
