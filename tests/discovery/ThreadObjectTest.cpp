// SPDX-License-Identifier: MIT

#include "discovery/CShareableObject.h"
#include "discovery/CThreadObject.h"
#include "tests/support/Warnings.h"
#include "tests/support/scripted/ScriptedThreads.h"

#include <QtTest>

#include <memory>

namespace {

// What the threads of a test function did.
QStringList steps;

class Worker : public CThreadObject
{
public:
    explicit Worker(int result = 1)
        : CThreadObject("ARPThread")
        , result(result)
    {
    }
    ~Worker() override { CloseToThreads(); }

    void OnThreadStart() override { steps << "start"; }
    int ThreadMain() override
    {
        steps << "main";
        return result;
    }
    void OnThreadEnd() override { steps << "end"; }

private:
    int result;
};

// Its destructor leaves the closing to its base.
class CarelessWorker : public CThreadObject
{
public:
    CarelessWorker()
        : CThreadObject(QString())
    {
    }

    void OnThreadStart() override { steps << "start"; }
    int ThreadMain() override { return 1; }
    void OnThreadEnd() override { steps << "end"; }
};

// Is destroyed by its own thread, in the middle of its work.
class ShortLivedWorker : public CThreadObject
{
public:
    ShortLivedWorker(std::unique_ptr<ShortLivedWorker>& owner, bool leavesFirst)
        : CThreadObject(QString())
        , owner(owner)
        , leavesFirst(leavesFirst)
    {
    }
    ~ShortLivedWorker() override { CloseToThreads(); }

    void OnThreadStart() override { steps << "start"; }
    int ThreadMain() override
    {
        std::unique_ptr<ShortLivedWorker>& ownerOfThis = owner;
        if (leavesFirst) {
            LeaveObject();
        }
        ownerOfThis.reset();
        steps << "destroyed";
        return 5;
    }
    void OnThreadEnd() override { steps << "end"; }

private:
    std::unique_ptr<ShortLivedWorker>& owner;
    bool leavesFirst;
};

} // namespace

class ThreadObjectTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void init()
    {
        WarningsFail::init();
        ScriptedThreads::Reset();
        steps.clear();
    }

    // Runs first.
    void instanceNumbersCountFromZeroAndTheNameIsDropped()
    {
        const Worker one;
        const Worker two;
        QCOMPARE(one.GetInstanceNumber(), 0);
        QCOMPARE(two.GetInstanceNumber(), 1);
        QVERIFY(one.GetName().isEmpty());
        QCOMPARE(one.GetThreadHandle(), platform::SystemHandle{-1});
    }

    void aRefusedStartIsFalseAndKeepsTheHandle()
    {
        Worker worker;
        ScriptedThreads::GiveHandles({41});
        QVERIFY(worker.StartThread());
        ScriptedThreads::RunAll();
        ScriptedThreads::RefuseStarts();
        QVERIFY(!worker.StartThread());
        QCOMPARE(worker.GetThreadHandle(), platform::SystemHandle{41});
        QCOMPARE(ScriptedThreads::Starts(), 2);
    }

    void anyOtherHandleCountsAsStarted()
    {
        for (const int handle : {0, -2, 1}) {
            Worker worker;
            ScriptedThreads::GiveHandles({handle});
            QVERIFY(worker.StartThread());
            QCOMPARE(worker.GetThreadHandle(), platform::SystemHandle{handle});
            ScriptedThreads::RunAll();
        }
    }

    void aSecondStartWhileTheFirstRunsIsAFurtherThreadAndReplacesTheHandle()
    {
        Worker worker;
        ScriptedThreads::GiveHandles({10, 20});
        QVERIFY(worker.StartThread());
        QVERIFY(worker.StartThread());
        QCOMPARE(ScriptedThreads::Waiting(), 2);
        QCOMPARE(worker.GetThreadHandle(), platform::SystemHandle{20});
        ScriptedThreads::RunAll();
        QCOMPARE(steps.count("main"), 2);
        QCOMPARE(worker.GetThreadHandle(), platform::SystemHandle{20});
    }

    void theThreadCallsStartMainAndEndInThisOrder()
    {
        Worker worker;
        worker.StartThread();
        QVERIFY(steps.isEmpty());
        ScriptedThreads::RunNext();
        QCOMPARE(steps, (QStringList{"start", "main", "end"}));
    }

    void theExitCodeIsTheLow16BitsWithTheirSign()
    {
        const QPair<int, int> codes[] = {
            {1, 1}, {0x7FFF, 32767}, {0x8000, -32768}, {0xFFFF, -1}, {0x12340002, 2}, {-2, -2}};
        for (const auto& [result, exitCode] : codes) {
            Worker worker(result);
            worker.StartThread();
            QCOMPARE(ScriptedThreads::RunNext(), exitCode);
        }
    }

    void aThreadThatBeginsAfterItsObjectWentCallsNothingAndEndsWithZero()
    {
        Worker().StartThread();
        CarelessWorker().StartThread();
        while (ScriptedThreads::Waiting() > 0) {
            QCOMPARE(ScriptedThreads::RunNext(), 0);
        }
        QVERIFY(steps.isEmpty());
    }

    void aThreadThatDestroysItsObjectDoesNotComeBackToIt()
    {
        for (const bool leavesFirst : {true, false}) {
            steps.clear();
            std::unique_ptr<ShortLivedWorker> owner;
            owner = std::make_unique<ShortLivedWorker>(owner, leavesFirst);
            owner->StartThread();
            QCOMPARE(ScriptedThreads::RunNext(), 5);
            QCOMPARE(steps, (QStringList{"start", "destroyed"}));
        }
    }

    void theMutexIsStoredAsItComesAndClosedOnceWithTheObject()
    {
        QVector<platform::SystemHandle> closed;
        for (const int handle : {0x1234, 0, -1}) {
            ScriptedThreads::GiveMutex(handle);
            {
                const CShareableObject object;
                QCOMPARE(object.GetMutexHandle(), platform::SystemHandle{handle});
                QCOMPARE(ScriptedThreads::ClosedMutexes(), closed);
            }
            QCOMPARE(ScriptedThreads::ClosedMutexes(), closed << handle);
        }
        {
            const Worker worker;
        }
        QCOMPARE(ScriptedThreads::ClosedMutexes(), closed << -1);
    }
};

QTEST_GUILESS_MAIN(ThreadObjectTest)
#include "ThreadObjectTest.moc"
