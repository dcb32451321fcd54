#include "tests/support/scripted/ScriptedThreads.h"

#include "discovery/CThreadObject.h"

#include <QtTest>

#include <memory>

namespace {

class Worker : public CThreadObject
{
public:
    explicit Worker(QStringList& log, int result = 1)
        : CThreadObject("ARPThread")
        , log(log)
        , result(result)
    {
    }
    ~Worker() override { CloseToThreads(); }

    void OnThreadStart() override { log << "start"; }
    int ThreadMain() override
    {
        log << "main";
        return result;
    }
    void OnThreadEnd() override { log << "end"; }

private:
    QStringList& log;
    int result;
};

// Is destroyed by its own thread, in the middle of its work.
class ShortLivedWorker : public CThreadObject
{
public:
    ShortLivedWorker(QStringList& log, std::unique_ptr<ShortLivedWorker>& owner)
        : CThreadObject(QString())
        , log(log)
        , owner(owner)
    {
    }
    ~ShortLivedWorker() override { CloseToThreads(); }

    void OnThreadStart() override { log << "start"; }
    int ThreadMain() override
    {
        QStringList& logOfTest = log;
        std::unique_ptr<ShortLivedWorker>& ownerOfThis = owner;
        LeaveObject();
        ownerOfThis.reset();
        logOfTest << "destroyed";
        return 5;
    }
    void OnThreadEnd() override { log << "end"; }

private:
    QStringList& log;
    std::unique_ptr<ShortLivedWorker>& owner;
};

} // namespace

class ThreadObjectTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { ScriptedThreads::Reset(); }

    void twoConstructionsGiveConsecutiveInstanceNumbersFromZero()
    {
        QStringList log;
        static bool first = true;
        const Worker one(log);
        const Worker two(log);
        if (std::exchange(first, false)) {
            QCOMPARE(one.GetInstanceNumber(), 0);
        }
        QCOMPARE(two.GetInstanceNumber(), one.GetInstanceNumber() + 1);
    }

    void theNameIsDropped()
    {
        QStringList log;
        QVERIFY(Worker(log).GetName().isEmpty());
    }

    void theHandleIsMinusOneBeforeTheFirstStart()
    {
        QStringList log;
        QCOMPARE(Worker(log).GetThreadHandle(), platform::SystemHandle{-1});
    }

    void aRefusedStartIsFalseAndKeepsTheHandle()
    {
        QStringList log;
        Worker worker(log);
        ScriptedThreads::GiveHandles({41});
        QVERIFY(worker.StartThread());
        ScriptedThreads::RunAll();
        ScriptedThreads::RefuseStarts();
        QVERIFY(!worker.StartThread());
        QCOMPARE(worker.GetThreadHandle(), platform::SystemHandle{41});
        QCOMPARE(ScriptedThreads::Starts(), 2);
    }

    void anyOtherHandleCountsAsStarted_data()
    {
        QTest::addColumn<qlonglong>("handle");
        QTest::addRow("zero") << 0LL;
        QTest::addRow("minus two") << -2LL;
        QTest::addRow("one") << 1LL;
    }

    void anyOtherHandleCountsAsStarted()
    {
        QFETCH(qlonglong, handle);
        QStringList log;
        Worker worker(log);
        ScriptedThreads::GiveHandles({static_cast<platform::SystemHandle>(handle)});
        QVERIFY(worker.StartThread());
        QCOMPARE(static_cast<qlonglong>(worker.GetThreadHandle()), handle);
        ScriptedThreads::RunAll();
    }

    void aSecondStartWhileTheFirstRunsIsAFurtherThreadAndReplacesTheHandle()
    {
        QStringList log;
        Worker worker(log);
        ScriptedThreads::GiveHandles({10, 20});
        QVERIFY(worker.StartThread());
        QVERIFY(worker.StartThread());
        QCOMPARE(ScriptedThreads::Waiting(), 2);
        QCOMPARE(worker.GetThreadHandle(), platform::SystemHandle{20});
        ScriptedThreads::RunAll();
        QCOMPARE(log.count("main"), 2);
        QCOMPARE(worker.GetThreadHandle(), platform::SystemHandle{20});
    }

    void theThreadCallsStartMainAndEndInThisOrder()
    {
        QStringList log;
        Worker worker(log);
        worker.StartThread();
        QVERIFY(log.isEmpty());
        ScriptedThreads::RunNext();
        QCOMPARE(log, (QStringList{"start", "main", "end"}));
    }

    void theExitCodeIsTheLow16BitsWithTheirSign_data()
    {
        QTest::addColumn<int>("result");
        QTest::addColumn<int>("exitCode");
        QTest::addRow("one") << 1 << 1;
        QTest::addRow("largest") << 0x7FFF << 32767;
        QTest::addRow("sign bit") << 0x8000 << -32768;
        QTest::addRow("all 16 bits") << 0xFFFF << -1;
        QTest::addRow("cut") << 0x12340002 << 2;
        QTest::addRow("negative") << -2 << -2;
    }

    void theExitCodeIsTheLow16BitsWithTheirSign()
    {
        QFETCH(int, result);
        QStringList log;
        Worker worker(log, result);
        worker.StartThread();
        QTEST(ScriptedThreads::RunNext(), "exitCode");
    }

    void aThreadThatBeginsAfterItsObjectWentCallsNothing()
    {
        QStringList log;
        {
            Worker worker(log);
            worker.StartThread();
        }
        ScriptedThreads::RunNext();
        QVERIFY(log.isEmpty());
    }

    void aThreadThatLeftItsObjectDoesNotComeBackToIt()
    {
        QStringList log;
        std::unique_ptr<ShortLivedWorker> owner;
        owner = std::make_unique<ShortLivedWorker>(log, owner);
        owner->StartThread();
        QCOMPARE(ScriptedThreads::RunNext(), 5);
        QCOMPARE(log, (QStringList{"start", "destroyed"}));
    }

    void theMutexIsClosedWithTheObject()
    {
        QStringList log;
        ScriptedThreads::GiveMutex(9);
        {
            const Worker worker(log);
        }
        QCOMPARE(ScriptedThreads::ClosedMutexes(), QVector<platform::SystemHandle>{9});
    }
};

QTEST_APPLESS_MAIN(ThreadObjectTest)
#include "ThreadObjectTest.moc"
