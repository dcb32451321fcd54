// SPDX-License-Identifier: MIT

#include "tests/support/scripted/ScriptedThreads.h"

#include <QtGlobal>

#include <utility>

namespace {

struct Thread
{
    platform::ThreadEntry entry;
    void* parameter;
};

constexpr platform::SystemHandle UsualHandle = 1;

QVector<Thread> waiting;
QVector<platform::SystemHandle> handlesToGive;
QVector<platform::SystemHandle> closedMutexes;
platform::SystemHandle mutexToGive = UsualHandle;
bool refusing = false;
int starts = 0;

} // namespace

void ScriptedThreads::Reset()
{
    Q_ASSERT(waiting.isEmpty());
    handlesToGive.clear();
    closedMutexes.clear();
    mutexToGive = UsualHandle;
    refusing = false;
    starts = 0;
}

void ScriptedThreads::RefuseStarts()
{
    refusing = true;
}

void ScriptedThreads::GiveHandles(QVector<platform::SystemHandle> handles)
{
    handlesToGive = std::move(handles);
}

void ScriptedThreads::GiveMutex(platform::SystemHandle handle)
{
    mutexToGive = handle;
}

const QVector<platform::SystemHandle>& ScriptedThreads::ClosedMutexes()
{
    return closedMutexes;
}

int ScriptedThreads::Starts()
{
    return starts;
}

int ScriptedThreads::Waiting()
{
    return waiting.size();
}

int ScriptedThreads::RunNext()
{
    const Thread thread = waiting.takeFirst();
    return thread.entry(thread.parameter);
}

void ScriptedThreads::RunAll()
{
    while (Waiting() > 0) {
        RunNext();
    }
}

platform::SystemHandle platform::StartThread(ThreadEntry entry, void* parameter)
{
    ++starts;
    if (refusing) {
        return InvalidHandle;
    }
    waiting.append({entry, parameter});
    return handlesToGive.isEmpty() ? UsualHandle : handlesToGive.takeFirst();
}

platform::SystemHandle platform::CreateMutex()
{
    return mutexToGive;
}

void platform::CloseMutex(SystemHandle mutex)
{
    closedMutexes.append(mutex);
}
