// SPDX-License-Identifier: MIT

#include "discovery/CDeviceDetector.h"
#include "tests/support/Warnings.h"
#include "tests/support/scripted/JoinedThreads.h"
#include "tests/support/scripted/ScriptedClock.h"
#include "tests/support/scripted/ScriptedNeighbours.h"

#include <QProgressDialog>
#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <memory>
#include <thread>

namespace {

// A resolution that lasts until it is let go.
class HangingNetwork
{
public:
    HangingNetwork()
    {
        ScriptedNeighbours::Reset();
        ScriptedNeighbours::SetOnCall([this](const QString& call) {
            if (call.startsWith("resolve")) {
                hanging.release();
                letGo.acquire();
            }
        });
    }

    void AwaitHanging(int threads) { hanging.acquire(threads); }

    void LetGo(int threads)
    {
        letGo.release(threads);
        JoinedThreads::JoinAll();
    }

private:
    QSemaphore hanging;
    QSemaphore letGo;
};

// Stays in its ThreadMain() until its destructor begins.
class StubbornWorker : public CThreadObject
{
public:
    explicit StubbornWorker(int& endedBeforeTheObject)
        : CThreadObject(QString())
        , endedBeforeTheObject(endedBeforeTheObject)
    {
    }

    ~StubbornWorker() override
    {
        inside.acquire(Threads);
        mayGo.release(Threads);
        CloseToThreads();
        endedBeforeTheObject = ended;
    }

    void OnThreadStart() override {}
    int ThreadMain() override
    {
        inside.release();
        mayGo.acquire();
        for (int turn = 0; turn < 1000; ++turn) {
            std::this_thread::yield(); // so that the object is on its way out before the thread is
        }
        ++ended;
        return 0;
    }
    void OnThreadEnd() override {}

    static constexpr int Threads = 4;

private:
    QSemaphore inside;
    QSemaphore mayGo;
    std::atomic<int> ended{0};
    int& endedBeforeTheObject;
};

} // namespace

class ThreadLifetimeTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void init()
    {
        WarningsFail::init();
        ScriptedClock::Reset();
        ScriptedNeighbours::Reset();
    }

    void resolutionsOfASearchOverlap()
    {
        HangingNetwork network;
        QProgressDialog progress;
        CDeviceDetector detector;
        ScriptedClock::SetDuringWait([&network](unsigned milliseconds) {
            if (milliseconds == 80) {
                network.AwaitHanging(1);
            }
        });
        QVERIFY(detector.SearchDevices("10.0.0.1", "10.0.0.30", &progress));
        QStringList expected;
        for (int octet = 1; octet <= 30; ++octet) {
            expected << QString("resolve 10.0.0.%1").arg(octet);
        }
        QCOMPARE(ScriptedNeighbours::Calls("resolve"), expected);
        network.LetGo(30);
    }

    void aDetectorGoesWithoutWaitingForItsHangingThreads()
    {
        HangingNetwork network;
        auto detector = std::make_unique<CDeviceDetector>();
        for (int thread = 0; thread < 20; ++thread) {
            QVERIFY(detector->StartThread());
        }
        network.AwaitHanging(20);
        detector.reset();
        network.LetGo(20);
    }

    void aDetectorMayGoWhileItsThreadsOnlyBegin()
    {
        for (int round = 0; round < 200; ++round) {
            CDeviceDetector detector;
            QVERIFY(detector.StartThread());
            QVERIFY(detector.StartThread());
        }
        JoinedThreads::JoinAll();
    }

    void anObjectWaitsForThreadsThatDoNotLeaveIt()
    {
        int endedBeforeTheObject = 0;
        {
            StubbornWorker worker(endedBeforeTheObject);
            for (int thread = 0; thread < StubbornWorker::Threads; ++thread) {
                QVERIFY(worker.StartThread());
            }
        }
        QCOMPARE(endedBeforeTheObject, int(StubbornWorker::Threads));
        JoinedThreads::JoinAll();
    }
};

QTEST_MAIN(ThreadLifetimeTest)
#include "ThreadLifetimeTest.moc"
