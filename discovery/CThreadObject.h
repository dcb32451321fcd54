// SPDX-License-Identifier: MIT

#pragma once

#include "discovery/CShareableObject.h"

#include <QString>

#include <memory>

/// An object that does its work in system threads. Each StartThread() starts one more, and several
/// may run at once. Nobody waits for them. A thread may outlive the object once it has left it by
/// LeaveObject().
class CThreadObject : public CShareableObject
{
public:
    /// The name is dropped: GetName() stays empty.
    explicit CThreadObject(const QString& name);

    /// Waits for threads that are inside one of the three operations below.
    ~CThreadObject() override;

    /// One more thread, which calls OnThreadStart(), ThreadMain() and OnThreadEnd(). False when the
    /// system started none.
    bool StartThread();

    virtual void OnThreadStart() = 0;

    /// The low 16 bits of the result, with their sign, are the thread's exit code.
    virtual int ThreadMain() = 0;

    virtual void OnThreadEnd() = 0;

    /// Counts the objects of the process, from 0 on, in the order of their construction.
    qint32 GetInstanceNumber() const;

    QString GetName() const;

    /// The most recent thread's, or -1 before the first. Stays when that thread has ended.
    platform::SystemHandle GetThreadHandle() const;

protected:
    /// For ThreadMain() to call before it blocks. From then on the calling thread must not touch
    /// the object, whose destruction does not wait for it any more. Does nothing in any other
    /// thread.
    void LeaveObject();

    /// The destructor of each class that implements the operations calls this first. Waits for the
    /// threads that are inside one of them, and keeps all others out.
    void CloseToThreads();

private:
    class Gate;
    using GatePointer = std::shared_ptr<Gate>;

    static int ThreadEntry(void* gatePointer);

    qint32 instanceNumber;
    QString name;
    platform::SystemHandle threadHandle = platform::InvalidHandle;
    GatePointer gate;
};
