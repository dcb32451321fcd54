// SPDX-License-Identifier: MIT

#include "platform/Threads.h"

#include "platform/Sleep.h"
#include "tests/platform/contract/Contracts.h"
#include "tests/platform/contract/Results.h"

#include <atomic>
#include <set>

using results::Expect;

namespace contract {
namespace {

constexpr int ThreadCount = 50;

// Of each thread its own: the address tells one from another.
thread_local char identity = 0;

struct Work
{
    std::atomic<int> begun{0};
    std::atomic<int> ended{0};
    std::atomic<bool> mayEnd{false};
    std::atomic<const char*> identityOfLatest{nullptr};
};

int DoWork(void* parameter)
{
    auto* work = static_cast<Work*>(parameter);
    work->identityOfLatest = &identity;
    ++work->begun;
    while (!work->mayEnd) {
        platform::Sleep(1);
    }
    ++work->ended;
    return 70000;
}

void AwaitCount(const std::atomic<int>& count, int wanted)
{
    while (count != wanted) {
        platform::Sleep(1);
    }
}

void CheckOneThread()
{
    static Work work; // the thread may still be returning from its last call
    const platform::SystemHandle thread = platform::StartThread(DoWork, &work);
    Expect("the handle of no thread and no mutex is -1", platform::InvalidHandle == -1);
    Expect("a thread can be started", thread != platform::InvalidHandle);
    AwaitCount(work.begun, 1);
    Expect("a thread gets its parameter and runs beside the caller", work.ended == 0);
    Expect("a thread is another one than the caller's", work.identityOfLatest != &identity);
    work.mayEnd = true;
    AwaitCount(work.ended, 1);
}

void CheckManyThreads()
{
    static Work work;
    std::set<platform::SystemHandle> handles;
    for (int thread = 0; thread < ThreadCount; ++thread) {
        handles.insert(platform::StartThread(DoWork, &work));
    }
    AwaitCount(work.begun, ThreadCount);
    Expect("fifty threads run at once, each with a handle of its own",
        handles.size() == ThreadCount && handles.count(platform::InvalidHandle) == 0);
    work.mayEnd = true;
    AwaitCount(work.ended, ThreadCount);
}

void CheckMutexes()
{
    const platform::SystemHandle one = platform::CreateMutex();
    const platform::SystemHandle two = platform::CreateMutex();
    Expect("each mutex has a handle of its own",
        one != platform::InvalidHandle && two != platform::InvalidHandle && one != two);
    platform::CloseMutex(one);
    platform::CloseMutex(two);
    platform::CloseMutex(platform::InvalidHandle);
    const platform::SystemHandle three = platform::CreateMutex();
    Expect("closing mutexes, and a handle of none, does no harm", three != platform::InvalidHandle);
    platform::CloseMutex(three);
}

} // namespace

void CheckThreads()
{
    CheckOneThread();
    CheckManyThreads();
    CheckMutexes();
}

} // namespace contract
