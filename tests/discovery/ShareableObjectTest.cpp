#include "tests/support/scripted/ScriptedThreads.h"

#include "discovery/CShareableObject.h"

#include <QtTest>

class ShareableObjectTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { ScriptedThreads::Reset(); }

    void theHandleIsStoredAsItComes_data()
    {
        QTest::addColumn<qlonglong>("handle");
        QTest::addRow("usual") << 0x1234LL;
        QTest::addRow("none") << 0LL;
        QTest::addRow("failed") << -1LL;
    }

    void theHandleIsStoredAsItComes()
    {
        QFETCH(qlonglong, handle);
        ScriptedThreads::GiveMutex(handle);
        const CShareableObject object;
        QCOMPARE(static_cast<qlonglong>(object.GetMutexHandle()), handle);
        QVERIFY(ScriptedThreads::ClosedMutexes().isEmpty());
    }

    void theDestructorClosesTheMutexOnce()
    {
        ScriptedThreads::GiveMutex(77);
        {
            const CShareableObject object;
        }
        QCOMPARE(ScriptedThreads::ClosedMutexes(), QVector<platform::SystemHandle>{77});
    }
};

QTEST_APPLESS_MAIN(ShareableObjectTest)
#include "ShareableObjectTest.moc"
