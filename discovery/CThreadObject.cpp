// SPDX-License-Identifier: MIT

#include "discovery/CThreadObject.h"

#include <atomic>
#include <thread>

namespace {

std::atomic<qint32> nextInstanceNumber{0};

} // namespace

// Stands between an object and its threads. It outlives the object while a thread still holds it.
class CThreadObject::Gate
{
public:
    explicit Gate(CThreadObject& object)
        : object(object)
    {
    }

    // Runs an operation on the object, unless the object is going or gone.
    template<typename Operation>
    void Call(Operation operation)
    {
        if (Enter()) {
            operation(object);
            Leave();
        }
    }

    // Does nothing in a thread that is not inside, so that a thread may leave before its call
    // returns.
    void Leave()
    {
        if (entered == this) {
            entered = nullptr;
            --threadsInside;
        }
    }

    void Close()
    {
        Leave();
        closed = true;
        while (threadsInside != 0) {
            std::this_thread::yield();
        }
    }

private:
    // Counts the thread before it looks. So either Close() sees the thread, or the thread sees that
    // the gate is closed.
    bool Enter()
    {
        ++threadsInside;
        entered = this;
        if (closed) {
            Leave();
        }
        return entered == this;
    }

    static thread_local Gate* entered; // by the calling thread

    CThreadObject& object;
    std::atomic<int> threadsInside{0};
    std::atomic<bool> closed{false};
};

thread_local CThreadObject::Gate* CThreadObject::Gate::entered = nullptr;

CThreadObject::CThreadObject(const QString&)
    : instanceNumber(nextInstanceNumber++)
    , gate(std::make_shared<Gate>(*this))
{
}

CThreadObject::~CThreadObject()
{
    CloseToThreads();
}

bool CThreadObject::StartThread()
{
    auto parameter = std::make_unique<GatePointer>(gate);
    const platform::SystemHandle handle = platform::StartThread(ThreadEntry, parameter.get());
    if (handle == platform::InvalidHandle) {
        return false;
    }
    static_cast<void>(parameter.release()); // the thread frees it
    threadHandle = handle;
    return true;
}

int CThreadObject::ThreadEntry(void* gatePointer)
{
    const std::unique_ptr<GatePointer> own(static_cast<GatePointer*>(gatePointer));
    Gate& gate = **own;
    int result = 0;
    gate.Call([](CThreadObject& object) { object.OnThreadStart(); });
    gate.Call([&result](CThreadObject& object) { result = object.ThreadMain(); });
    gate.Call([](CThreadObject& object) { object.OnThreadEnd(); });
    return static_cast<qint16>(result);
}

qint32 CThreadObject::GetInstanceNumber() const
{
    return instanceNumber;
}

QString CThreadObject::GetName() const
{
    return name;
}

platform::SystemHandle CThreadObject::GetThreadHandle() const
{
    return threadHandle;
}

void CThreadObject::LeaveObject()
{
    gate->Leave();
}

void CThreadObject::CloseToThreads()
{
    gate->Close();
}
