#include "platform/Threads.h"

#include <QSemaphore>
#include <QtTest>

namespace {

struct Work
{
    QSemaphore begun;
    QSemaphore mayEnd;
    QSemaphore ended;
};

int DoWork(void* parameter)
{
    auto* work = static_cast<Work*>(parameter);
    work->begun.release();
    work->mayEnd.acquire();
    work->ended.release();
    return 1;
}

} // namespace

class ThreadsTest : public QObject
{
    Q_OBJECT

private slots:
    void aThreadRunsItsEntryWithItsParameterBesideTheCaller()
    {
        static Work work; // the thread may still be returning from its last call
        QVERIFY(platform::StartThread(DoWork, &work) != platform::InvalidHandle);
        work.begun.acquire();
        work.mayEnd.release();
        work.ended.acquire();
    }

    void threadsThatRunAtOnceHaveHandlesOfTheirOwn()
    {
        static Work work;
        QSet<qlonglong> handles;
        for (int thread = 0; thread < 50; ++thread) {
            handles << platform::StartThread(DoWork, &work);
        }
        work.begun.acquire(50);
        QCOMPARE(handles.size(), 50);
        QVERIFY(!handles.contains(-1));
        work.mayEnd.release(50);
        work.ended.acquire(50);
    }

    void aMutexHasAHandleOfItsOwn()
    {
        const platform::SystemHandle one = platform::CreateMutex();
        const platform::SystemHandle two = platform::CreateMutex();
        QVERIFY(one != platform::InvalidHandle);
        QVERIFY(two != platform::InvalidHandle);
        QVERIFY(one != two);
        platform::CloseMutex(one);
        platform::CloseMutex(two);
    }

    void theInvalidHandleIsLeftAlone() { platform::CloseMutex(platform::SystemHandle{-1}); }
};

QTEST_APPLESS_MAIN(ThreadsTest)
#include "ThreadsTest.moc"
